#include "envcheck/checktoolanswer.h"

#include <QDir>

#include "envcheck/environmentcheck.h"
#include "tests/support/shell/headlesstest.h"

using OfficeAssiant::checkToolAnswer;
using testsupport::PrivateHome;

/// Reading the answer that the check tool leaves in its INI file.
class CheckToolAnswerTest : public QObject
{
    Q_OBJECT

private:
    static void writeAnswers(const QByteArray &content)
    {
        PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/vyrEnv.ini"),
                                         content);
    }

    static QString answerOf(const char *type, const char *app)
    {
        return checkToolAnswer({QString::fromUtf8(type), QString::fromUtf8(app), {}});
    }

private slots:
    void init()
    {
        QDir(PrivateHome::current().suiteHome() + QStringLiteral("/tmp")).removeRecursively();
    }

    void theKeyNamesTheComponentFirst()
    {
        writeAnswers("[vyrEnv]\nvyr-t=ok\nt-vyr=wrong\n");
        QCOMPARE(answerOf("t", "vyr"), QStringLiteral("ok"));
    }

    void aMissingFileHasNoAnswer() { QVERIFY(answerOf("t", "vyr").isNull()); }

    void aMissingKeyHasNoAnswer()
    {
        writeAnswers("[other]\nvyr-t=ok\n[vyrEnv]\nvyr-u=ok\n");
        QVERIFY(answerOf("t", "vyr").isNull());
    }

    void aDirectoryInPlaceOfTheFileHasNoAnswer()
    {
        QVERIFY(
            QDir().mkpath(PrivateHome::current().suiteHome() + QStringLiteral("/tmp/vyrEnv.ini")));
        QVERIFY(answerOf("t", "vyr").isNull());
    }

    void theTextIsReadAsUtf8()
    {
        writeAnswers("[vyrEnv]\nvyr-t=\"缺少字体, ok\"\n");
        QCOMPARE(answerOf("t", "vyr"), QString::fromUtf8("缺少字体, ok"));
    }

    void theTextEndsAtItsFirstZeroByte()
    {
        writeAnswers("[vyrEnv]\nvyr-t=\"seen\\0unseen\"\n");
        QCOMPARE(answerOf("t", "vyr"), QStringLiteral("seen"));
    }

    void aListWithoutQuotesIsNoText()
    {
        writeAnswers("[vyrEnv]\nvyr-t=a, b\n");
        QVERIFY(answerOf("t", "vyr").isNull());
    }

    void anEmptyTextIsAnAnswer()
    {
        writeAnswers("[vyrEnv]\nvyr-t=\n");
        QCOMPARE(answerOf("t", "vyr"), QStringLiteral(""));
    }

    void garbageHasNoAnswer()
    {
        QByteArray garbage;
        for (qint64 number = 0; number < 200000; ++number)
            garbage.append(static_cast<char>((number * 7919) >> 3));
        writeAnswers(garbage);
        QVERIFY(answerOf("t", "vyr").isNull());
    }
};

HEADLESS_TEST_MAIN(CheckToolAnswerTest)
#include "tst_checktoolanswer.moc"
