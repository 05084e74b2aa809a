#include "programs/checktool/answerfile.h"

#include <QDir>
#include <QLockFile>
#include <QSettings>

#include <stdexcept>

#include <sys/stat.h>

#include "envcheck/checktoolanswer.h"
#include "envcheck/environmentcheck.h"
#include "qtversion/qtversion.h"
#include "tests/support/shell/headlesstest.h"

/// The check tool's answers, read as the environment check reads them.
class AnswerFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QDir(directory()).removeRecursively(); }

    void whatIsWrittenIsReadAsItWas_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"ok", "", "a, b, and c", "one\ntwo\r\nthree\ttab", "a; b # c", "\"quoted\" 'text'",
              "back\\slash \\n \\x41", "@at the beginning", " spaces ", "[group]", "key=value",
              "100 %U4e2d", "✘ 没有字体。\n⚠ 注意", "@Invalid()", "@ByteArray(x)"})
            QTest::newRow(text) << QString::fromUtf8(text);
        QTest::newRow("long") << QString(200000, QLatin1Char('x'));
        QTest::newRow("beyond the basic plane") << QString::fromUtf8("😀");
    }

    void whatIsWrittenIsReadAsItWas()
    {
        QFETCH(QString, text);
        write(QStringLiteral("fonts"), QStringLiteral("vyr"), text);
        QCOMPARE(read(QStringLiteral("fonts"), QStringLiteral("vyr")), text);
    }

    void namesFromThePageMayHoldAnything_data()
    {
        QTest::addColumn<QString>("check");
        QTest::addColumn<QString>("application");
        QTest::newRow("nothing") << QString() << QString();
        QTest::newRow("slashes") << QStringLiteral("/a//b/") << QStringLiteral("../c");
        QTest::newRow("ini") << QStringLiteral("[x]=;#") << QStringLiteral("a=b\nc");
        QTest::newRow("percent") << QStringLiteral("%20") << QStringLiteral("%General");
        QTest::newRow("chinese") << QString::fromUtf8("字体") << QString::fromUtf8("文字");
        QTest::newRow("backslash") << QStringLiteral("a\\b") << QStringLiteral("\\");
    }

    void namesFromThePageMayHoldAnything()
    {
        QFETCH(QString, check);
        QFETCH(QString, application);
        write(check, application, QStringLiteral("found"));
        QCOMPARE(read(check, application), QStringLiteral("found"));
    }

    void theProgramStandsBeforeTheCheckInTheKey()
    {
        write(QStringLiteral("fonts"), QStringLiteral("vyr"), QStringLiteral("ok"));
        QCOMPARE(testsupport::readFile(path()), QByteArray("[vyrEnv]\nvyr-fonts=ok\n"));
    }

    void otherAnswersAndGroupsAreKept()
    {
        writeFile("[vyrEnv]\nvyr-t=old\ntbl-t=\"a, b\"\n\n[other]\nkey=\xe5\xad\x97\n");
        write(QStringLiteral("t"), QStringLiteral("vyr"), QStringLiteral("new"));
        QCOMPARE(read(QStringLiteral("t"), QStringLiteral("vyr")), QStringLiteral("new"));
        QCOMPARE(read(QStringLiteral("t"), QStringLiteral("tbl")), QStringLiteral("a, b"));
        QSettings file(path(), QSettings::IniFormat);
        qtversion::useUtf8(file);
        QCOMPARE(file.value(QStringLiteral("other/key")).toString(), QString::fromUtf8("字"));
    }

    void garbageIsReplaced()
    {
        writeFile(QByteArray("\x01\xff[[[garbage\n=\n").repeated(1000));
        write(QStringLiteral("t"), QStringLiteral("vyr"), QStringLiteral("new"));
        QCOMPARE(read(QStringLiteral("t"), QStringLiteral("vyr")), QStringLiteral("new"));
    }

    void nothingIsLeftBesideTheFile()
    {
        write(QStringLiteral("t"), QStringLiteral("vyr"), QStringLiteral("new"));
        QCOMPARE(QDir(directory()).entryList(QDir::Files | QDir::Hidden),
                 QStringList(QStringLiteral("vyrEnv.ini")));
    }

    void aPipeInThePlaceOfTheFileIsRefused()
    {
        QDir().mkpath(directory());
        QCOMPARE(mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
        QVERIFY_EXCEPTION_THROWN(write(QStringLiteral("t"), QStringLiteral("vyr"), {}),
                                 std::runtime_error);
    }

    void aFileInThePlaceOfTheDirectoryIsRefused()
    {
        testsupport::PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp"),
                                                      {});
        QVERIFY_EXCEPTION_THROWN(write(QStringLiteral("t"), QStringLiteral("vyr"), {}),
                                 std::runtime_error);
        QVERIFY(QFile::remove(directory()));
    }

    void aLockThatIsNeverReleasedIsAnError()
    {
        writeFile("[vyrEnv]\nvyr-t=old\n");
        QLockFile lock(path() + QStringLiteral(".lock"));
        QVERIFY(lock.lock());
        QVERIFY_EXCEPTION_THROWN(programs::writeAnswer(suiteHome(), QStringLiteral("t"),
                                                       QStringLiteral("vyr"), QStringLiteral("new"),
                                                       10),
                                 std::runtime_error);
        QCOMPARE(read(QStringLiteral("t"), QStringLiteral("vyr")), QStringLiteral("old"));
    }

    void theLockOfAProgramThatIsGoneIsTakenOver()
    {
        // As QLockFile writes it: process, program, host.
        QDir().mkpath(directory());
        testsupport::PrivateHome::current().writeFile(
            QStringLiteral(".local/share/Orvane/tmp/vyrEnv.ini.lock"),
            "99999999\ngone\n" + QSysInfo::machineHostName().toLocal8Bit() + '\n');
        write(QStringLiteral("t"), QStringLiteral("vyr"), QStringLiteral("new"));
        QCOMPARE(read(QStringLiteral("t"), QStringLiteral("vyr")), QStringLiteral("new"));
    }

private:
    static QString suiteHome() { return testsupport::PrivateHome::current().suiteHome(); }
    static QString directory() { return suiteHome() + QStringLiteral("/tmp"); }
    static QString path() { return directory() + QStringLiteral("/vyrEnv.ini"); }

    static void writeFile(const QByteArray &content)
    {
        testsupport::PrivateHome::current().writeFile(
            QStringLiteral(".local/share/Orvane/tmp/vyrEnv.ini"), content);
    }

    static void write(const QString &check, const QString &application, const QString &text)
    {
        programs::writeAnswer(suiteHome(), check, application, text);
    }

    static QString read(const QString &check, const QString &application)
    {
        return OfficeAssiant::checkToolAnswer({check, application, {}});
    }
};

HEADLESS_TEST_MAIN(AnswerFileTest)
#include "tst_answerfile.moc"
