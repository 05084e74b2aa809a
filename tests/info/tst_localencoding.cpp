#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextCodec>

#include <cstdio>
#include <cstring>

#include <langinfo.h>

#include "info/runcommand.h"
#include "tests/support/patience.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/headlesstest.h"

namespace {

constexpr char probeOption[] = "--probe";

/// Prints what a command line makes of a text, and what its output is read as.
int probe(const QString &text)
{
    const QString bytes =
        OfficeAssiant::runCommand(QStringLiteral("printf %s '%1' | od -An -tx1").arg(text));
    // Longer than any piece in which output is read.
    const QString echoed = OfficeAssiant::runCommand(
        QStringLiteral("printf x; for i in $(seq 2000); do printf %s '%1'; done").arg(text));
    const bool isWhole = echoed == QLatin1Char('x') + text.repeated(2000);
    std::printf("%s %s\n", qPrintable(bytes.simplified()), isWhole ? "whole" : "damaged");
    return 0;
}

} // namespace

/// Commands and their output where the locale's encoding is not UTF-8. The locales are built here.
class LocalEncodingTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_locales;

private slots:
    void commandsAreWrittenAndReadInTheLocalesEncoding_data()
    {
        QTest::addColumn<QString>("encoding");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("Western European")
            << QStringLiteral("ISO-8859-1") << QString::fromUtf8("ä") << QByteArray("e4");
        QTest::newRow("Chinese") << QStringLiteral("GBK") << QString::fromUtf8("中")
                                 << QByteArray("d6 d0");
        QTest::newRow("Japanese") << QStringLiteral("EUC-JP") << QString::fromUtf8("日")
                                  << QByteArray("c6 fc");
    }

    void commandsAreWrittenAndReadInTheLocalesEncoding()
    {
        QFETCH(QString, encoding);
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        QFile source(m_locales.filePath(QStringLiteral("source")));
        QVERIFY(source.open(QIODevice::WriteOnly));
        source.write("LC_CTYPE\ncopy \"i18n\"\nEND LC_CTYPE\n");
        source.close();
        // Forced: it has no more than the one part.
        QProcess builder;
        builder.start(QStringLiteral("localedef"),
                      {QStringLiteral("-c"), QStringLiteral("-i"), source.fileName(),
                       QStringLiteral("-f"), encoding, m_locales.filePath(encoding)});
        QVERIFY(builder.waitForFinished(testsupport::longestWaitMs));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LOCPATH"), m_locales.path());
        environment.insert(QStringLiteral("LC_CTYPE"), encoding);
        environment.remove(QStringLiteral("LC_ALL"));
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(QCoreApplication::applicationFilePath(),
                      {QLatin1String(probeOption), QString::fromLatin1(text.toUtf8().toHex())});
        QVERIFY(program.waitForFinished(testsupport::longestWaitMs));
        QCOMPARE(program.readAllStandardOutput(), bytes + " whole\n");
    }
};

int main(int argc, char *argv[])
{
    if (argc > 2 && std::strcmp(argv[1], probeOption) == 0) {
        const QCoreApplication application(argc, argv);
        // As a shell does for a Qt whose ICU takes every locale for UTF-8.
        QTextCodec::setCodecForLocale(QTextCodec::codecForName(::nl_langinfo(CODESET)));
        return probe(QString::fromUtf8(QByteArray::fromHex(argv[2])));
    }
    const testsupport::PrivateHome home;
    const helio::HeadlessApplication application(argv[0]);
    LocalEncodingTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_localencoding.moc"
