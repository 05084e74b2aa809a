#include <QLibrary>
#include <QProcess>

#include <cstdio>
#include <cstring>
#include <functional>

#include "bridge/ktoolmanager.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using OfficeAssiant::KToolManager;

namespace {

constexpr char endOption[] = "--report-end";

QList<QPair<const char *, QObject *>> helpers()
{
    KToolManager &manager = KToolManager::instance();
    return {{"desktopHelp", &manager.desktopHelp}, {"updateHelp", &manager.updateHelp},
            {"infoHelp", &manager.infoHelp},       {"inputChecker", &manager.inputChecker},
            {"dumpHelp", &manager.dumpHelp},       {"envCheckThread", &manager.envCheckThread},
            {"fsSearch", &manager.fsSearch}};
}

/// Prints the helpers' names as they are destroyed at the end of the program.
void reportEnd()
{
    const auto all = helpers();
    for (const auto &helper : all) {
        QObject::connect(helper.second, &QObject::destroyed,
                         [name = helper.first] { std::puts(name); });
    }
}

} // namespace

/// The tool manager's members, and its screen-grab library.
class ManagerLifeTest : public QObject
{
    Q_OBJECT

private slots:
    static void theHelpersAreMadeInTheirOrder()
    {
        const auto all = helpers();
        // Members are constructed in the order in which they lie in the object.
        for (int index = 1; index < all.size(); ++index)
            QVERIFY2(std::less<>()(all.at(index - 1).second, all.at(index).second),
                     all.at(index).first);
    }

    static void theyAreDestroyedInTheReverseOrder()
    {
        QProcess program;
        program.start(QCoreApplication::applicationFilePath(), {QLatin1String(endOption)});
        QVERIFY(program.waitForFinished(testsupport::longestWaitMs));
        QCOMPARE(program.exitCode(), 0);
        QByteArray expected;
        const auto all = helpers();
        for (const auto &helper : all)
            expected.prepend(QByteArray(helper.first) + '\n');
        QCOMPARE(program.readAllStandardOutput(), expected);
    }

    static void aLibraryWithoutItsSymbolIsLikeNone()
    {
        QVERIFY(!KToolManager::instance().screenGrab());
        const auto *library = KToolManager::instance().findChild<QLibrary *>();
        QVERIFY(library && library->isLoaded());
        testsupport::RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("screenshots")),
                 QJsonObject({{QStringLiteral("result"), QStringLiteral("success")}}));
        QCOMPARE(shell.events(QStringLiteral("signal")).size(), 2);
    }
};

int main(int argc, char *argv[])
{
    const testsupport::PrivateHome home;
    qputenv("HELIO_FRAMEWORKS", FAKE_FRAMEWORKS);
    const helio::HeadlessApplication application(argv[0]);
    if (argc > 1 && std::strcmp(argv[1], endOption) == 0) {
        reportEnd();
        return 0;
    }
    ManagerLifeTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_managerlife.moc"
