#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "helio/shell/chromiumarguments.h"
#include "helio/shell/graphics.h"
#include "helio/shell/startvariables.h"
#include "tests/support/shell/headlesstest.h"

class ChromiumLaunchTest : public QObject
{
    Q_OBJECT

private slots:
    void variablesComeBackAsTheyWere();
    void theSandboxIsKeptUnlessToldOtherwise();
    void theProcessorDrawsWhereNoDeviceDoes();
    void whatTheUserSetsForQtHolds();
};

void ChromiumLaunchTest::variablesComeBackAsTheyWere()
{
    qputenv("HIDDEN_FULL", "value");
    qputenv("HIDDEN_EMPTY", "");
    qunsetenv("HIDDEN_UNSET");
    qputenv("SET_FULL", "value");
    qunsetenv("SET_UNSET");
    {
        const shell::StartVariables variables({"HIDDEN_FULL", "HIDDEN_EMPTY", "HIDDEN_UNSET"},
                                              {{"SET_FULL", "1"}, {"SET_UNSET", "2"}});
        QVERIFY(!qEnvironmentVariableIsSet("HIDDEN_FULL"));
        QVERIFY(!qEnvironmentVariableIsSet("HIDDEN_EMPTY"));
        QCOMPARE(qgetenv("SET_FULL"), QByteArray("1"));
        QCOMPARE(qgetenv("SET_UNSET"), QByteArray("2"));
    }
    QCOMPARE(qgetenv("HIDDEN_FULL"), QByteArray("value"));
    QVERIFY(qEnvironmentVariableIsSet("HIDDEN_EMPTY"));
    QVERIFY(qEnvironmentVariableIsEmpty("HIDDEN_EMPTY"));
    QVERIFY(!qEnvironmentVariableIsSet("HIDDEN_UNSET"));
    QCOMPARE(qgetenv("SET_FULL"), QByteArray("value"));
    QVERIFY(!qEnvironmentVariableIsSet("SET_UNSET"));
}

void ChromiumLaunchTest::theSandboxIsKeptUnlessToldOtherwise()
{
    const auto words = [](shell::ChromiumArguments &&arguments) {
        QByteArrayList list;
        for (int index = 0; index < arguments.count(); ++index)
            list.append(arguments.values()[index]);
        return list;
    };
    const QByteArrayList plain = words(shell::ChromiumArguments("/program", 0, false));
    QCOMPARE(plain.mid(0, 2), (QByteArrayList{"/program", "--webEngineArgs"}));
    QVERIFY(!plain.contains("--no-sandbox"));
    QVERIFY(!plain.join(' ').contains("remote-debugging"));
    const QByteArrayList asRoot = words(shell::ChromiumArguments("/program", 9222, true));
    QVERIFY(asRoot.contains("--no-sandbox"));
    QVERIFY(asRoot.contains("--remote-debugging-port=9222"));
}

void ChromiumLaunchTest::theProcessorDrawsWhereNoDeviceDoes()
{
    const QTemporaryDir devices;
    QVERIFY(!shell::hasGraphicsDevice(devices.path()));
    QVERIFY(QDir(devices.path()).mkdir(QStringLiteral("dri")));
    const auto touch = [&devices](const QString &name) {
        QFile file(devices.filePath(name));
        return file.open(QIODevice::WriteOnly);
    };
    // A card that only shows pictures, as virtual machines have.
    QVERIFY(touch(QStringLiteral("dri/card0")));
    QVERIFY(!shell::hasGraphicsDevice(devices.path()));
    QVERIFY(touch(QStringLiteral("dri/renderD128")));
    QVERIFY(shell::hasGraphicsDevice(devices.path()));
    QVERIFY(QFile::remove(devices.filePath(QStringLiteral("dri/renderD128"))));
    QVERIFY(touch(QStringLiteral("nvidiactl")));
    QVERIFY(shell::hasGraphicsDevice(devices.path()));
}

void ChromiumLaunchTest::whatTheUserSetsForQtHolds()
{
    QVERIFY(shell::isDrawnByProcessor(shell::Graphics::Processor));
    QVERIFY(!shell::isDrawnByProcessor(shell::Graphics::Device));
    const shell::StartVariables variables({}, {{"QT_QUICK_BACKEND", "software"}});
    QVERIFY(!shell::isDrawnByProcessor(shell::Graphics::Automatic));
}

HEADLESS_TEST_MAIN(ChromiumLaunchTest)
#include "tst_chromiumlaunch.moc"
