#include <QProcess>
#include <QTest>

#include "info/shellwords.h"

using OfficeAssiant::shellWord;
using OfficeAssiant::shellWords;

/// Words on a shell's command line.
class ShellWordsTest : public QObject
{
    Q_OBJECT

private slots:
    void aPlainWordStaysByteForByte()
    {
        for (const char *word :
             {"/home/user/.config/Orvane/Office.conf", "a", "-x", "a_b-1.2:3@4", "100%", "a+b,c"})
            QCOMPARE(shellWord(QLatin1String(word)), QString(QLatin1String(word)));
    }

    void anyOtherWordIsReadBackByTheShellAsItIs_data()
    {
        QTest::addColumn<QString>("word");
        for (int code = 1; code < 256; ++code)
            QTest::addRow("character %d", code) << QStringLiteral("a%1b").arg(QChar(code));
        for (const char *word : {"", "$(exit)", "'", "''", "a'$(exit)'b", "\\'", "-n \"", "~", "*",
                                 "#x", "a=b", "字 体"})
            QTest::addRow("%s", word) << QString::fromUtf8(word);
    }

    void anyOtherWordIsReadBackByTheShellAsItIs()
    {
        QFETCH(const QString, word);
        QProcess shell;
        shell.start(QStringLiteral("/bin/sh"),
                    {QStringLiteral("-c"), QStringLiteral("printf %s ") + shellWord(word)});
        QVERIFY(shell.waitForFinished());
        QCOMPARE(QString::fromLocal8Bit(shell.readAllStandardOutput()), word);
        QCOMPARE(shell.readAllStandardError(), QByteArray());
    }

    void blanksPartWords()
    {
        QCOMPARE(
            shellWords(QStringLiteral("  /tmp/a b\t\nc;d ")),
            QStringList({QStringLiteral("/tmp/a"), QStringLiteral("b"), QStringLiteral("'c;d'")}));
        QCOMPARE(shellWords(QStringLiteral(" \t\n")), QStringList());
    }
};

QTEST_GUILESS_MAIN(ShellWordsTest)
#include "tst_shellwords.moc"
