#include <QTemporaryDir>

#include "info/otherofficesuites.h"
#include "tests/support/shell/headlesstest.h"

namespace {

/// A directory of desktop entries.
class Applications
{
public:
    void add(const QString &name, const QByteArray &content) const
    {
        QFile file(m_directory.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
    }

    void addDirectory(const QString &name) const { QDir(m_directory.path()).mkdir(name); }

    QStringList suites() const
    {
        return OfficeAssiant::otherOfficeSuites(m_directory.path() + QLatin1Char('/'));
    }

private:
    QTemporaryDir m_directory;
};

} // namespace

/// The desktop entries of other office suites.
class OtherOfficeSuitesTest : public QObject
{
    Q_OBJECT

private slots:
    void aLineHasNameLocalizedNameAndCommand()
    {
        const Applications applications;
        applications.add(QStringLiteral("libreoffice-writer.desktop"),
                         "[Desktop Entry]\nName=LibreOffice Writer\n"
                         "Name[zh_CN]=\xe6\x96\x87\xe6\xa1\xa3\nExec=libreoffice --writer %U\n");
        QCOMPARE(
            applications.suites(),
            QStringList{QStringLiteral("LibreOffice Writer \u6587\u6863libreoffice --writer %U")});
    }

    void theDatabaseProgramIsLeftOutAndTheWriterIsNot()
    {
        const Applications applications;
        applications.add(QStringLiteral("libreoffice-base.desktop"),
                         "[Desktop Entry]\nName=Base\nExec=b\n");
        applications.add(QStringLiteral("libreoffice-base2.desktop"),
                         "[Desktop Entry]\nName=Base 2\nExec=b\n");
        applications.add(QStringLiteral("libreoffice-writer.desktop"),
                         "[Desktop Entry]\nName=Writer\nExec=w\n");
        QCOMPARE(applications.suites(), QStringList{QStringLiteral("Writer    w")});
    }

    void onlyTheThreeSuitesEntriesAreListed()
    {
        const Applications applications;
        for (const char *name : {"yozo-writer.desktop", "my-free18.desktop", "gedit.desktop",
                                 "libreoffice.txt", "libreoffice-calc.desktop"})
            applications.add(QLatin1String(name), "[Desktop Entry]\nExec=x\n");
        applications.addDirectory(QStringLiteral("libreoffice-folder.desktop"));
        QStringList lines = applications.suites();
        lines.sort();
        QCOMPARE(lines, QStringList({QStringLiteral("libreoffice-calc.desktop x"),
                                     QStringLiteral("my-free18.desktop x"),
                                     QStringLiteral("yozo-writer.desktop x")}));
    }

    void anEntryWithoutANameUsesItsFileName()
    {
        const Applications applications;
        applications.add(QStringLiteral("yozo.desktop"), "[Desktop Entry]\nExec=yozo\n");
        QCOMPARE(applications.suites(), QStringList{QStringLiteral("yozo.desktop yozo")});
    }

    void aNameWithoutLocalizedOnesIsPaddedToTenColumns()
    {
        const Applications applications;
        applications.add(QStringLiteral("yozo.desktop"), "[Desktop Entry]\nName=Yozo\nExec=y\n");
        QCOMPARE(applications.suites(), QStringList{QStringLiteral("Yozo      y")});
    }

    void aNameIsDecodedEvenIfItIsNoTextInTheLocalesEncoding()
    {
        const Applications applications;
        applications.add(QStringLiteral("yozo.desktop"),
                         "[Desktop Entry]\nName=Yozo\nName[zh_CN]=a\xe9z\nExec=y\n");
        QCOMPARE(applications.suites(), QStringList{QStringLiteral("Yozo a\ufffdz  y")});
    }

    void theGenericNameStandsInForTheLocalizedName()
    {
        const Applications applications;
        applications.add(QStringLiteral("yozo.desktop"),
                         "[Desktop Entry]\nName=Yozo\nName[zh_CN]=\n"
                         "GenericName[zh_CN]=\xe6\x96\x87\nExec=y\n");
        QCOMPARE(applications.suites(), QStringList{QStringLiteral("Yozo \u6587    y")});
    }

    void withoutACommandOneBlankStandsThere()
    {
        const Applications applications;
        applications.add(QStringLiteral("yozo.desktop"), "[Desktop Entry]\nName=Yozo Office 9\n");
        QCOMPARE(applications.suites(), QStringList{QStringLiteral("Yozo Office 9  ")});
    }

    void keysOfOtherGroupsAreNotRead()
    {
        const Applications applications;
        applications.add(QStringLiteral("yozo.desktop"),
                         "[Desktop Action New]\nName=New\nExec=new\n[Desktop Entry]\nName=Yozo\n");
        QCOMPARE(applications.suites(), QStringList{QStringLiteral("Yozo       ")});
    }

    void garbageGivesShorterLines_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("bytes") << QByteArray("\0\xff\xfe[\n=", 6);
        QTest::newRow("no group") << QByteArray("Name=x\nExec=y\n");
        QTest::newRow("megabyte in a line") << QByteArray(1 << 20, '[');
    }

    void garbageGivesShorterLines()
    {
        QFETCH(QByteArray, content);
        const Applications applications;
        applications.add(QStringLiteral("yozo.desktop"), content);
        QCOMPARE(applications.suites(), QStringList{QStringLiteral("yozo.desktop  ")});
    }

    void aMissingDirectoryHasNoSuites()
    {
        QVERIFY(OfficeAssiant::otherOfficeSuites(QStringLiteral("/nonexistent/")).isEmpty());
    }
};

HEADLESS_TEST_MAIN(OtherOfficeSuitesTest)
#include "tst_otherofficesuites.moc"
