#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QTranslator>

#include "tests/input/inputmachinetest.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using OfficeAssiant::environmentValue;

namespace {

/// Translates the input checker's messages.
class InputTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return qstrcmp(context, "InputChecker") == 0 ? QString::fromLatin1(text).toLower()
                                                     : QString();
    }

    bool isEmpty() const override { return false; }
};

} // namespace

/// The result of the diagnosis, its message and its history.
class InputCheckerTest : public InputMachineTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void anUnsetModuleIsAMissingPluginBeforeAnyProcessIsLookedFor()
    {
        m_system.processDirectory = m_machine->filePath(QStringLiteral("nowhere/"));
        QCOMPARE(check(), QStringLiteral("ERR_LOADPLUGIN_FAILED"));
        QVERIFY(debugMessages().isEmpty());
    }

    void aPluginKeyCountsOnlyInItsExactCase()
    {
        m_plugins = QStringList{QStringLiteral("FCITX")};
        runProcess(1, QStringLiteral("fcitx"));
        qputenv("QT_IM_MODULE", "FCITX");
        QCOMPARE(check(), QStringLiteral("ERR_LOADPLUGIN_FAILED"));
    }

    void anUpperCaseModuleIsLowered()
    {
        qputenv("QT_IM_MODULE", "FCITX");
        QCOMPARE(check(), QStringLiteral("ERR_NOT_RUNNING"));
        runProcess(7, QStringLiteral("fcitx"));
        QCOMPARE(check(), QStringLiteral("ERR_OK"));
    }

    void fcitx5AloneServesTheModuleFcitx()
    {
        qputenv("QT_IM_MODULE", "fcitx");
        runProcess(7, QStringLiteral("fcitx5"));
        QCOMPARE(check(), QStringLiteral("ERR_OK"));
    }

    void theModuleFcitx5IsHealthyWithoutItsDaemon()
    {
        m_plugins.append(QStringLiteral("fcitx5"));
        qputenv("QT_IM_MODULE", "fcitx5");
        QCOMPARE(check(), QStringLiteral("ERR_OK"));
    }

    void anotherModuleWithAPluginIsHealthyWithoutFurtherChecks()
    {
        qputenv("QT_IM_MODULE", "xim");
        qputenv("XMODIFIERS", "@im=fcitx");
        m_system.processDirectory = m_machine->filePath(QStringLiteral("nowhere/"));
        QCOMPARE(check(), QStringLiteral("ERR_OK"));
        QVERIFY(debugMessages().isEmpty());
    }

    void anAbsentDaemonIsJudgedByWhetherTheSettingsAgree_data()
    {
        QTest::addColumn<QByteArray>("module");
        QTest::addColumn<QByteArray>("modifiers");
        QTest::addColumn<QString>("message");
        const QString notRunning = QStringLiteral("ERR_NOT_RUNNING");
        const QString disagree = QStringLiteral("ERR_INVALID_ENV_CONFIG");
        QTest::newRow("ibus, fcitx") << QByteArray("ibus") << QByteArray("@im=fcitx") << disagree;
        QTest::newRow("ibus, ibus") << QByteArray("ibus") << QByteArray("@im=ibus") << notRunning;
        QTest::newRow("ibus, unset") << QByteArray("ibus") << QByteArray() << notRunning;
        QTest::newRow("fcitx, ibus") << QByteArray("fcitx") << QByteArray("@im=ibus") << disagree;
        QTest::newRow("fcitx, fcitx5")
            << QByteArray("fcitx") << QByteArray("@im=fcitx5") << disagree;
        QTest::newRow("capitals") << QByteArray("ibus") << QByteArray("@im=IBUS") << notRunning;
        QTest::newRow("part of it") << QByteArray("ibus") << QByteArray("@im=bu") << notRunning;
        QTest::newRow("empty") << QByteArray("ibus") << QByteArray("@im=") << notRunning;
        QTest::newRow("other form") << QByteArray("ibus") << QByteArray("im=fcitx") << notRunning;
        QTest::newRow("not at the beginning")
            << QByteArray("ibus") << QByteArray("a@im=fcitx") << notRunning;
        QTest::newRow("longer name")
            << QByteArray("ibus") << QByteArray("@imx=fcitx") << notRunning;
    }

    void anAbsentDaemonIsJudgedByWhetherTheSettingsAgree()
    {
        QFETCH(QByteArray, module);
        QFETCH(QByteArray, modifiers);
        qputenv("QT_IM_MODULE", module);
        if (!modifiers.isNull())
            qputenv("XMODIFIERS", modifiers);
        QTEST(check(), "message");
        QVERIFY(debugMessages().isEmpty());
    }

#ifdef __GLIBC__
    void theEnvironmentIsReadAsTheCLibraryReadsIt()
    {
        for (const char *value : {"@im=fcitx", "@im=", "@im", "@im=a=b", "im=x", "", " @im=x"}) {
            qputenv("XMODIFIERS", value);
            QCOMPARE(environmentValue("XMODIFIERS=@im"), QByteArray(getenv("XMODIFIERS=@im")));
            QCOMPARE(environmentValue("XMODIFIERS"), QByteArray(getenv("XMODIFIERS")));
        }
        qputenv("XMODIFIERS_OTHER", "@im=x");
        qunsetenv("XMODIFIERS");
        QCOMPARE(environmentValue("XMODIFIERS=@im"), QByteArray());
    }
#endif

    void aMissingProcessDirectoryMakesTheDaemonAbsent()
    {
        m_system.processDirectory = m_machine->filePath(QStringLiteral("nowhere/"));
        qputenv("QT_IM_MODULE", "ibus");
        QCOMPARE(check(), QStringLiteral("ERR_NOT_RUNNING"));
        QCOMPARE(InputChecker(m_system).findProcessByName(QStringLiteral("ibus-daemon")), -1);
    }

    void aProcessIsFoundByTheWholeNameOfItsExecutable()
    {
        runProcess(41, QStringLiteral("ibus-daemon-helper"));
        runProcess(42, QStringLiteral("ibus-daemon"));
        link(QStringLiteral("proc/43a/exe"), QStringLiteral("/usr/bin/other"));
        link(QStringLiteral("proc/44/cwd"), QStringLiteral("/usr/bin/vanished"));
        link(QStringLiteral("proc/45/exe"), QStringLiteral("/usr/bin/gone (deleted)"));
        writeFile(m_machine->filePath(QStringLiteral("proc/46")), "no directory");
        QDir(m_machine->path()).mkpath(QStringLiteral("proc/47"));
        const InputChecker checker(m_system);
        QCOMPARE(checker.findProcessByName(QStringLiteral("ibus-daemon")), 42);
        for (const char *name : {"ibus", "other", "vanished", "gone", "", "/usr/bin/ibus-daemon"})
            QCOMPARE(checker.findProcessByName(QLatin1String(name)), -1);
    }

    void aRealProcessIsFoundByTheNameOfItsExecutable()
    {
        // No other process on the machine has this name.
        const QString name = QStringLiteral("sleeper-%1").arg(::getpid());
        const QString program = m_machine->filePath(name);
        QVERIFY(QFile::copy(QStandardPaths::findExecutable(QStringLiteral("sleep")), program));
        QCOMPARE(InputChecker().findProcessByName(name), -1);
        QProcess process;
        process.start(program, {QStringLiteral("600")});
        QVERIFY(process.waitForStarted(testsupport::longestWaitMs));
        QCOMPARE(InputChecker().findProcessByName(name), process.processId());
        process.kill();
        QVERIFY(process.waitForFinished(testsupport::longestWaitMs));
        QCOMPARE(InputChecker().findProcessByName(name), -1);
    }

    void everyCheckIsKeptWithItsTimeInTheDefaultLocale()
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        InputChecker checker(m_system);
        checker.check();
        qputenv("QT_IM_MODULE", "xim");
        checker.check();
        QLocale::setDefault(QLocale::c());
        QCOMPARE(checker.history().size(), 2);
        QCOMPARE(checker.history().at(0).second, QStringLiteral("ERR_LOADPLUGIN_FAILED"));
        QCOMPARE(checker.history().at(1).second, QStringLiteral("ERR_OK"));
        const QRegularExpression time(QStringLiteral(
            "^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d (Mo|Di|Mi|Do|Fr|Sa|So)\\.?$"));
        QVERIFY2(time.match(checker.history().at(0).first).hasMatch(),
                 qPrintable(checker.history().at(0).first));
    }

    void everyCodeHasItsMessage()
    {
        const QStringList names{QStringLiteral("ERR_OK"),
                                QStringLiteral("ERR_OTHER"),
                                QStringLiteral("ERR_LOADPLUGIN_FAILED"),
                                QStringLiteral("ERR_NOT_RUNNING"),
                                QStringLiteral("ERR_NOT_FIND_BUSCONFIG"),
                                QStringLiteral("ERR_INVALID_ENV_CONFIG")};
        for (int code = 0; code < names.size(); ++code)
            QCOMPARE(InputChecker::message(code), names.at(code));
        QCOMPARE(InputChecker::message(6), QStringLiteral("ERR_OTHER"));
        QCOMPARE(InputChecker::message(-1), QStringLiteral("ERR_OTHER"));
    }

    void everyMessageButTheHealthyOneIsTranslated()
    {
        InputTranslator translator;
        QCoreApplication::installTranslator(&translator);
        QCOMPARE(InputChecker::message(ERR_OK), QStringLiteral("ERR_OK"));
        QCOMPARE(InputChecker::message(ERR_OTHER), QStringLiteral("err_other"));
        QCOMPARE(InputChecker::message(ERR_LOADPLUGIN_FAILED),
                 QStringLiteral("err_loadplugin_failed"));
        QCOMPARE(InputChecker::message(ERR_NOT_RUNNING), QStringLiteral("err_not_running"));
        QCOMPARE(InputChecker::message(ERR_NOT_FIND_BUSCONFIG),
                 QStringLiteral("err_not_find_busconfig"));
        QCOMPARE(InputChecker::message(ERR_INVALID_ENV_CONFIG),
                 QStringLiteral("err_invalid_env_config"));
    }

    void theCommandAsksTheRealPlugins()
    {
        testsupport::RecordingShell shell;
        const QString command = QStringLiteral("inputcheck");
        const QString key = QStringLiteral("result");
        QCOMPARE(shell.call(command).value(key).toString(),
                 QStringLiteral("ERR_LOADPLUGIN_FAILED"));
        qputenv("QT_IM_MODULE", "xim");
        QCOMPARE(shell.call(command).value(key).toString(), QStringLiteral("ERR_OK"));
    }
};

HEADLESS_TEST_MAIN(InputCheckerTest)
#include "tst_inputchecker.moc"
