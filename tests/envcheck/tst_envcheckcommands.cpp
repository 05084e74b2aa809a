#include <QCoreApplication>
#include <QUrl>

#include "bridge/ktoolmanager.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"
#include "tests/support/suiteprogram.h"

using testsupport::PrivateHome;
using testsupport::RecordingShell;
using testsupport::SuiteProgram;

/// The environment check's commands, up to the page.
class EnvCheckCommandsTest : public QObject
{
    Q_OBJECT

private:
    static QJsonObject success() { return {{QStringLiteral("result"), QStringLiteral("success")}}; }

    static QJsonObject checkArguments(const char *type)
    {
        return {{QStringLiteral("type"), QLatin1String(type)},
                {QStringLiteral("app"), QStringLiteral("vyr")}};
    }

private slots:
    void initTestCase()
    {
        PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/vyrEnv.ini"),
                                         "[vyrEnv]\nvyr-t=ok\nvyr-u=bad\n");
    }

    void beforeAnyCheckTheResultIsAnError()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("getvyrenvcheckedresult")),
                 (QJsonObject{{QStringLiteral("result"), QStringLiteral("error")}}));
    }

    void withoutAChildPageACheckShowsAndKeepsNothing()
    {
        const SuiteProgram tool(QStringLiteral("vyrEnvCheckTool"));
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("vyrenvcheck"), checkArguments("t")), success());
        QVERIFY(QTest::qWaitFor([&tool] { return tool.calls().size() == 1; },
                                testsupport::longestWaitMs));
        QVERIFY(OfficeAssiant::KToolManager::instance().envCheckThread.wait(
            testsupport::longestWaitMs));
        QCoreApplication::processEvents();
        QVERIFY(shell.events(QStringLiteral("callback")).isEmpty());
        QCOMPARE(shell.call(QStringLiteral("getvyrenvcheckedresult"))
                     .value(QLatin1String("result"))
                     .toString(),
                 QStringLiteral("error"));
    }

    void aCheckFromTheMainPageIsShownToTheChildPage()
    {
        const SuiteProgram tool(QStringLiteral("vyrEnvCheckTool"));
        RecordingShell shell;
        shell.shell().page(QStringLiteral("child"));
        QCOMPARE(shell.call(QStringLiteral("vyrenvcheck"), checkArguments("t")), success());
        const QJsonObject shown =
            shell.waitFor(QStringLiteral("callback"), QStringLiteral("returnvyrenvcheck"));
        QCOMPARE(shown.value(QLatin1String("page")).toString(), QStringLiteral("child"));
        QCOMPARE(shown.value(QLatin1String("result")).toObject(),
                 (QJsonObject{{QStringLiteral("value"), QStringLiteral("b2s=")},
                              {QStringLiteral("cmd"), QStringLiteral("t")},
                              {QStringLiteral("app"), QStringLiteral("vyr")}}));
    }

    void afterTwoChecksTheResultHasTwoMembers()
    {
        const SuiteProgram tool(QStringLiteral("vyrEnvCheckTool"));
        RecordingShell shell;
        const QString child = QStringLiteral("child");
        for (const char *type : {"t", "u"}) {
            shell.forget();
            shell.call(QStringLiteral("vyrenvcheck"), checkArguments(type), {}, child);
            QVERIFY(!shell.waitFor(QStringLiteral("callback")).isEmpty());
        }
        QCOMPARE(shell.call(QStringLiteral("getvyrenvcheckedresult")),
                 (QJsonObject{{QStringLiteral("result"),
                               QJsonObject{{QStringLiteral("t-vyr"), QStringLiteral("ok")},
                                           {QStringLiteral("u-vyr"), QStringLiteral("bad")}}}}));
    }

    void closingTheCheckViewDropsTheRunningCheck()
    {
        const SuiteProgram tool(QStringLiteral("vyrEnvCheckTool"),
                                "while [ ! -e \"$HOME/go\" ]; do sleep 0.02; done");
        RecordingShell shell;
        const QString child = QStringLiteral("child");
        shell.call(QStringLiteral("vyrenvcheck"), checkArguments("t"), {}, child);
        QVERIFY(QTest::qWaitFor([&tool] { return tool.calls().size() == 1; },
                                testsupport::longestWaitMs));
        shell.call(QStringLiteral("closechildwindow"),
                   {{QStringLiteral("type"), QStringLiteral("vyrrunningcheck")}}, {}, child);
        shell.forget();
        PrivateHome::current().writeFile(QStringLiteral("go"), {});
        // The next check waits for this one.
        shell.call(QStringLiteral("vyrenvcheck"), checkArguments("u"), {}, child);
        QCOMPARE(shell.waitFor(QStringLiteral("callback"), QStringLiteral("returnvyrenvcheck"))
                     .value(QLatin1String("result"))
                     .toObject()
                     .value(QLatin1String("cmd"))
                     .toString(),
                 QStringLiteral("u"));
        QCOMPARE(shell.events(QStringLiteral("callback")).size(), 1);
    }

    void thePluginCheckPageOpensInTheBrowser()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("runfirefoxplugin")), success());
        QCOMPARE(
            shell.events(QStringLiteral("opened")).value(0).value(QLatin1String("url")).toString(),
            QUrl::fromLocalFile(QCoreApplication::applicationDirPath() +
                                QStringLiteral("/addons/vyrassistanttool/officeassistant/"
                                               "resource/html/vyrNpEnvCheck.html"))
                .toString());
    }
};

HEADLESS_TEST_MAIN(EnvCheckCommandsTest)
#include "tst_envcheckcommands.moc"
