#include <QDirIterator>
#include <QProcess>
#include <QTest>

#include <cstring>

#include "tests/support/patience.h"
#include "tests/support/privatehome.h"

namespace {

/// What readelf prints of a file's header, segments, dynamic section and dynamic symbols.
QString description(const QString &file)
{
    QProcess readelf;
    readelf.start(QStringLiteral("readelf"),
                  {QStringLiteral("--wide"), QStringLiteral("--file-header"),
                   QStringLiteral("--program-headers"), QStringLiteral("--dynamic"),
                   QStringLiteral("--dyn-syms"), file});
    if (!readelf.waitForFinished(testsupport::longestWaitMs) || readelf.exitCode() != 0)
        qFatal("readelf: %s", readelf.readAllStandardError().constData());
    return QString::fromUtf8(readelf.readAllStandardOutput());
}

/// The line of @p text that has @p word in it.
QString lineWith(const QString &text, const char *word)
{
    const QStringList lines = text.split(u'\n');
    const QStringList found = lines.filter(QLatin1String(word));
    return found.value(0);
}

/// The programs and libraries that are built.
QStringList builtFiles()
{
    QStringList files;
    QDirIterator tree(QStringLiteral(SUITE_OFFICE_DIR), QDir::Files | QDir::NoSymLinks,
                      QDirIterator::Subdirectories);
    while (tree.hasNext()) {
        QFile file(tree.next());
        if (file.open(QFile::ReadOnly) && file.read(4) == "\x7f"
                                                          "ELF")
            files.append(file.fileName());
    }
    return files;
}

} // namespace

/// What the built files have against memory faults that somebody exploits.
class HardeningTest : public QObject
{
    Q_OBJECT

private slots:
    void everyFileIsHardened_data()
    {
        QTest::addColumn<QString>("file");
        const QStringList files = builtFiles();
        for (const QString &file : files)
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << file;
        for (const char *needed : {"assistantctl", "libhelio.so", "libofficeassistant.so"})
            QVERIFY(!files.filter(QLatin1String(needed)).isEmpty());
    }

    void everyFileIsHardened()
    {
        QFETCH(QString, file);
        const QString text = description(file);
        // A program that is not position-independent has the type EXEC.
        QVERIFY(lineWith(text, "Type:").contains(QLatin1String("DYN")));
        QVERIFY(!lineWith(text, "GNU_RELRO").isEmpty());
        QVERIFY(lineWith(text, "(FLAGS_1)").contains(QLatin1String("NOW")));
        QVERIFY(lineWith(text, "GNU_STACK").contains(QLatin1String(" RW ")));
        // GCC writes down the options that it compiled with.
        const QByteArray bytes = testsupport::readFile(file);
        for (const char *option : {"-fstack-protector-strong", "-fstack-clash-protection"})
            QVERIFY2(bytes.contains(option), option);
    }

    /// In this program, which is compiled like all: most others leave nothing to check when they
    /// run.
    void stackAndBuffersAreCheckedAtRunTime()
    {
        const volatile std::size_t length = 3;
        char buffer[16] = {};
        std::memcpy(buffer, "abc", length);
        QCOMPARE(buffer, "abc");
        const QString text = description(QCoreApplication::applicationFilePath());
        QVERIFY(text.contains(QLatin1String("__memcpy_chk")));
        QVERIFY(text.contains(QLatin1String("__stack_chk_fail")));
    }
};

QTEST_GUILESS_MAIN(HardeningTest)
#include "tst_hardening.moc"
