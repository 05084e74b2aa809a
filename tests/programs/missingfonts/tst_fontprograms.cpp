#include <QDir>
#include <QProcess>
#include <QSettings>
#include <QtEndian>

#include <sys/resource.h>

#include "tests/programs/missingfonts/packagebuilder.h"
#include "tests/support/shell/headlesstest.h"

/// The programs vyr, tbl and shw as the page's command starts them.
class FontProgramsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QDir(home().suiteHome()).removeRecursively();
        qunsetenv("HELIO_SUITE_HOME");
    }

    void eachProgramWritesAFileOfItsOwn_data()
    {
        QTest::addColumn<QString>("program");
        for (const char *program : {"vyr", "tbl", "shw"})
            QTest::newRow(program) << QString::fromLatin1(program);
    }

    void eachProgramWritesAFileOfItsOwn()
    {
        QFETCH(QString, program);
        // The content says what a document is, whatever its name.
        QCOMPARE(run(rtf("{\\f0 x\\f1 x\\f2 x}"), program), 0);
        QCOMPARE(QDir(home().suiteHome() + QStringLiteral("/tmp")).entryList(QDir::Files),
                 QStringList{program + QStringLiteral("missfonts.ini")});
        QCOMPARE(missing(program), QStringLiteral("No Such Family;没有这种字体"));
    }

    void withoutMissingFontsTheKeyIsThereAndEmpty()
    {
        QCOMPARE(run(rtf("{\\f2 x}")), 0);
        const QSettings file(iniPath(QStringLiteral("vyr")), QSettings::IniFormat);
        QVERIFY(file.contains(QStringLiteral("vyrtool/MissFonts")));
        QCOMPARE(missing(QStringLiteral("vyr")), QString());
    }

    void otherKeysAreKept()
    {
        const QString path =
            home().writeFile(QStringLiteral(".local/share/Orvane/tmp/vyrmissfonts.ini"),
                             "[vyrtool]\nMissFonts=stale\nOther=kept\n[group]\nkey=value\n");
        QCOMPARE(run(rtf("{\\f0 x}")), 0);
        const QSettings file(path, QSettings::IniFormat);
        QCOMPARE(file.value(QStringLiteral("vyrtool/Other")).toString(), QStringLiteral("kept"));
        QCOMPARE(file.value(QStringLiteral("group/key")).toString(), QStringLiteral("value"));
        QCOMPARE(missing(QStringLiteral("vyr")), QStringLiteral("No Such Family"));
    }

    void theSuiteHomeCanBeElsewhere()
    {
        const QString elsewhere = home().path() + QStringLiteral("/elsewhere");
        qputenv("HELIO_SUITE_HOME", QFile::encodeName(elsewhere));
        QCOMPARE(run(rtf("{\\f0 x}")), 0);
        QVERIFY(QFile::exists(elsewhere + QStringLiteral("/tmp/vyrmissfonts.ini")));
        QVERIFY(!QFile::exists(iniPath(QStringLiteral("vyr"))));
    }

    void failuresSayWhyAndWriteNothing_data()
    {
        QTest::addColumn<QString>("document");
        QTest::newRow("not there") << home().path() + QStringLiteral("/absent.docx");
        QTest::newRow("a directory") << home().path();
        QTest::newRow("a device") << QStringLiteral("/dev/zero");
        QTest::newRow("empty") << home().writeFile(QStringLiteral("empty.docx"), {});
        QTest::newRow("garbage") << home().writeFile(QStringLiteral("garbage.docx"),
                                                     QByteArray("\x01\xFF garbage").repeated(1000));
        QTest::newRow("garbage in a package")
            << home().writeFile(QStringLiteral("zip.docx"), "PK\x03\x04" + QByteArray(100000, 'x'));
        QTest::newRow("garbage in an OLE2 file")
            << home().writeFile(QStringLiteral("ole.doc"),
                                QByteArray::fromHex("d0cf11e0a1b11ae1") + QByteArray(100000, 'x'));
        QTest::newRow("truncated") << truncatedPackage();
        QTest::newRow("flipped") << flippedPackage();
        QTest::newRow("another package") << otherPackage();
        QTest::newRow("a main part outside") << escapingPackage();
        QTest::newRow("4 GB in a few bytes") << boastfulPackage();
        QTest::newRow("entities") << package(
            "<!DOCTYPE a [<!ENTITY b \"bbbbbbbbbb\"><!ENTITY c \"&b;&b;&b;&b;\">]><a>&c;</a>");
        QTest::newRow("deep nesting") << package(QByteArray("<a>").repeated(3000000));
        QTest::newRow("endless attribute")
            << package("<a b=\"" + QByteArray(100000000, 'x') + "\"/>");
        QTest::newRow("endless fonts") << package(endlessFonts());
    }

    void failuresSayWhyAndWriteNothing()
    {
        QFETCH(QString, document);
        QCOMPARE(run(document), 1);
        QVERIFY(m_errors.startsWith("vyr: "));
        QVERIFY(m_errors.endsWith('\n'));
        QVERIFY(!QFile::exists(iniPath(QStringLiteral("vyr"))));
    }

    void aDirectoryOfAMillionEntriesEndsInAnError()
    {
        QCOMPARE(run(crowdedPackage()), 1);
        QVERIFY(!m_errors.isEmpty());
        QVERIFY(!QFile::exists(iniPath(QStringLiteral("vyr"))));
    }

    void wrongUsageWritesNothing()
    {
        QProcess process;
        process.start(QStringLiteral(SUITE_OFFICE_DIR "/vyr"), {rtf("x")});
        QVERIFY(process.waitForFinished(30000));
        QCOMPARE(process.exitCode(), 2);
        QVERIFY(!QFile::exists(iniPath(QStringLiteral("vyr"))));
    }

    void aLongTextIsReadInFixedMemory()
    {
        const QString document = package(
            "<w:document xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">"
            "<w:body><w:p><w:r><w:rPr><w:rFonts w:ascii=\"No Such Family\"/></w:rPr><w:t>" +
            QByteArray(200000000, 'x') + "</w:t></w:r></w:p></w:body></w:document>");
        QCOMPARE(run(document), 0);
        QCOMPARE(missing(QStringLiteral("vyr")), QStringLiteral("No Such Family"));
    }

    void noDocumentTookMoreThan64Megabytes()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("sanitizers need memory of their own");
#endif
        // The programs that have run so far, with the hostile documents among theirs.
        rusage usage = {};
        QCOMPARE(getrusage(RUSAGE_CHILDREN, &usage), 0);
        QVERIFY2(usage.ru_maxrss < 64 * 1024, qPrintable(QString::number(usage.ru_maxrss)));
    }

private:
    static testsupport::PrivateHome &home()
    {
        return testsupport::PrivateHome::current();
    }

    static QString iniPath(const QString &program)
    {
        return home().suiteHome() + QStringLiteral("/tmp/") + program +
               QStringLiteral("missfonts.ini");
    }

    /// As the page's command reads it.
    static QString missing(const QString &program)
    {
        QSettings file(iniPath(program), QSettings::IniFormat);
        file.beginGroup(QStringLiteral("vyrtool"));
        return file.value(QStringLiteral("MissFonts")).toString();
    }

    /// Of a child that shares this program's memory until it has started, as with Qt 6, the kernel
    /// takes this program's peak for the child's.
    static bool forgetOwnPeak()
    {
        QFile peak(QStringLiteral("/proc/self/clear_refs"));
        return peak.open(QIODevice::WriteOnly) && peak.write("5") == 1;
    }

    int run(const QString &document, const QString &program = QStringLiteral("vyr"))
    {
        if (!forgetOwnPeak())
            return -1;
        QProcess process;
        process.start(QStringLiteral(SUITE_OFFICE_DIR "/") + program,
                      {QStringLiteral("-savemissfont"), document});
        if (!process.waitForFinished(60000)) {
            process.kill();
            process.waitForFinished(5000);
            return -1;
        }
        m_errors = process.readAllStandardError();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    static QString rtf(const QByteArray &body)
    {
        return home().writeFile(QStringLiteral("document.xyz"),
                                "{\\rtf1{\\fonttbl{\\f0 No Such Family;}{\\f1\\fcharset134 "
                                "\\u27809?\\u26377?\\u36825?\\u31181?\\u23383?\\u20307?;}"
                                "{\\f2 DejaVu Sans;}}" +
                                    body + "}");
    }

    static QString package(const QByteArray &mainPart)
    {
        static int count = 0;
        testsupport::PackageBuilder builder;
        builder.relate({}, QStringLiteral("officeDocument"), QStringLiteral("main.xml"));
        builder.add(QStringLiteral("main.xml"), mainPart);
        const QString path = home().path() + QStringLiteral("/package%1.docx").arg(++count);
        builder.write(path);
        return path;
    }

    static QByteArray simpleMainPart()
    {
        return "<w:document xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/"
               "main\"><w:body/></w:document>";
    }

    static QString truncatedPackage()
    {
        const QByteArray whole = testsupport::readFile(package(simpleMainPart()));
        return home().writeFile(QStringLiteral("truncated.docx"), whole.left(whole.size() / 2));
    }

    /// Some of the packed content is another than the checksum says.
    static QString flippedPackage()
    {
        QByteArray whole = testsupport::readFile(package(simpleMainPart()));
        const int at = whole.indexOf("main.xml") + 60;
        for (int n = 0; n < 8; ++n)
            whole[at + n] = char(whole.at(at + n) ^ 0x55);
        return home().writeFile(QStringLiteral("flipped.docx"), whole);
    }

    static QString otherPackage()
    {
        testsupport::PackageBuilder builder;
        builder.add(QStringLiteral("mimetype"), "application/epub+zip");
        const QString path = home().path() + QStringLiteral("/other.docx");
        builder.write(path);
        return path;
    }

    static QString escapingPackage()
    {
        testsupport::PackageBuilder builder;
        builder.relate({}, QStringLiteral("officeDocument"),
                       QStringLiteral("../../../../etc/passwd"));
        builder.add(QStringLiteral("../../../../etc/passwd"), simpleMainPart());
        const QString path = home().path() + QStringLiteral("/escaping.docx");
        builder.write(path);
        return path;
    }

    /// The directory of the package claims that every part has nearly four gigabytes.
    static QString boastfulPackage()
    {
        QByteArray whole = testsupport::readFile(package(simpleMainPart()));
        const QByteArray directoryEntry = "PK\x01\x02";
        for (int at = whole.indexOf(directoryEntry); at >= 0;
             at = whole.indexOf(directoryEntry, at + 4))
            whole.replace(at + 24, 4, "\xF0\xFF\xFF\xFF");
        return home().writeFile(QStringLiteral("boastful.docx"), whole);
    }

    static QString crowdedPackage()
    {
        constexpr int count = 1000000;
        QByteArray entry = QByteArray("PK\x01\x02") + QByteArray(42, '\0') + "a";
        entry[28] = 1; // the length of the name
        const QByteArray beginning = QByteArray("PK\x03\x04") + QByteArray(26, '\0');
        QByteArray end = QByteArray("PK\x05\x06") + QByteArray(18, '\0');
        qToLittleEndian(quint32(entry.size() * count), end.data() + 12);
        qToLittleEndian(quint32(beginning.size()), end.data() + 16);
        return home().writeFile(QStringLiteral("crowded.docx"),
                                beginning + entry.repeated(count) + end);
    }

    static QByteArray endlessFonts()
    {
        QByteArray body = "<w:document xmlns:w=\"http://schemas.openxmlformats.org/"
                          "wordprocessingml/2006/main\">";
        for (int n = 0; n < 100000; ++n)
            body += "<w:p><w:r><w:rPr><w:rFonts w:ascii=\"Font " + QByteArray::number(n) +
                    "\"/></w:rPr><w:t>x</w:t></w:r></w:p>";
        return body + "</w:document>";
    }

    QByteArray m_errors;
};

HEADLESS_TEST_MAIN(FontProgramsTest)
#include "tst_fontprograms.moc"
