#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "doctor/format/checkreader.h"
#include "doctor/repairs/step.h"

using namespace doctor;

namespace {

/// Plans of steps in a home directory of their own.
class Home
{
public:
    Home()
    {
        m_machine.user = geteuid();
        m_machine.environment = {{QStringLiteral("HOME"), m_directory.path()}};
    }

    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }

    QString write(const char *name, const QByteArray &content) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", name);
        return path(name);
    }

    /// @param steps what stands between the brackets of a check file
    Plan plan(const QByteArray &steps, const Values &values = {}) const
    {
        return planOfCases(steps, {values});
    }

    Plan planOfCases(const QByteArray &steps, const QVector<Values> &cases) const
    {
        const CheckFile file = readChecks(
            R"({"id": "a", "title": "a", "look": {"process": "x"}, "finding": {"text": "a"}, "repairs":
               [{"id": "r", "title": "r", "steps": [)" +
                steps + "]}]}",
            QStringLiteral("test.json"));
        for (const Mistake &mistake : file.mistakes)
            qWarning().noquote() << mistake.line << mistake.column << mistake.message;
        if (file.checks.isEmpty())
            return {};
        return planSteps(file.checks.first().repairs.first().steps, cases, m_machine);
    }

    const Machine &machine() const { return m_machine; }

private:
    QTemporaryDir m_directory;
    Machine m_machine;
};

/// In a child process, which gives up root's account if it has it.
bool holdsAsOrdinaryUser(bool (*check)())
{
    constexpr uid_t nobody = 65534;
    const pid_t child = fork();
    if (child == 0)
        _exit((geteuid() != 0 || setresuid(nobody, nobody, nobody) == 0) && check() ? 0 : 1);
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

} // namespace

class TestPlans : public QObject
{
    Q_OBJECT

private slots:
    void twoKeysOfOneFileAreOneChange();
    void linesAreReplacedAddedAndRemoved();
    void aFileIsMovedAsideToAFreeName();
    void aBackupIsRestored();
    void onlyAStaleLockIsRemoved();
    void rightsOfAnothersFileAreForTheAdministrator();
    void aDefaultApplicationGoesToTheUsersList();
    void copiesLinksAndDirectoriesAreMade();
    void severalCasesShareOnePlan();
    void aProcessIsNamedWithItsStart();
    void aLinkOutOfTheTreeIsNotFollowedToAnothersFile();
    void pathsWithTwoDotsAreRefused();
    void nothingIsOverwrittenThatIsThere();
    void planningWritesNothing();
};

void TestPlans::twoKeysOfOneFileAreOneChange()
{
    const Home home;
    home.write("a.conf", "[x]\none=1\n");
    const Plan plan = home.plan(
        R"({"set": "$HOME/a.conf", "format": "ini", "key": ["x", "one"], "value": "2"},
           {"set": "$HOME/a.conf", "format": "ini", "key": ["x", "two"], "value": "3"})");
    QCOMPARE(plan.refusal, QString());
    QCOMPARE(plan.changes.size(), 1);
    QCOMPARE(plan.changes.first().kind, Change::Kind::Write);
    QCOMPARE(*plan.changes.first().before, QByteArray("[x]\none=1\n"));
    QCOMPARE(*plan.changes.first().after, QByteArray("[x]\none=2\ntwo=3\n"));
}

void TestPlans::linesAreReplacedAddedAndRemoved()
{
    const Home home;
    home.write("profile", "a\nexport X=1\nb\n");
    const Plan plan = home.plan(
        R"({"replaceLine": "$HOME/profile", "pattern": "^export X=", "with": "export X=2"},
           {"removeLine": "$HOME/profile", "pattern": "^b$"},
           {"addLine": "$HOME/profile", "text": "c"})");
    QCOMPARE(plan.refusal, QString());
    QCOMPARE(*plan.changes.value(0).after, QByteArray("a\nexport X=2\nc\n"));
}

void TestPlans::aFileIsMovedAsideToAFreeName()
{
    const Home home;
    home.write("a", "1");
    home.write("a.aside", "0");
    const Plan plan = home.plan(R"({"aside": "$HOME/a"})");
    QCOMPARE(plan.changes.value(0).kind, Change::Kind::Move);
    QCOMPARE(plan.changes.value(0).target, home.path("a.aside2"));
}

void TestPlans::aBackupIsRestored()
{
    const Home home;
    home.write("a", "broken");
    home.write("a.bak", "good");
    const Plan plan = home.plan(R"({"restore": "$HOME/a", "from": "$HOME/a.bak"})");
    QCOMPARE(*plan.changes.value(0).after, QByteArray("good"));
    QCOMPARE(home.plan(R"({"restore": "$HOME/a", "from": "$HOME/none"})").refusal,
             home.path("none") + QStringLiteral(" cannot be read"));
}

void TestPlans::onlyAStaleLockIsRemoved()
{
    const Home home;
    home.write("own.lock", QByteArray::number(getpid()) + "\n");
    home.write("stale.lock", "999999999\n");
    QVERIFY(
        home.plan(R"({"unlock": "$HOME/own.lock"})").refusal.contains(QLatin1String("is running")));
    const Plan plan = home.plan(R"({"unlock": "$HOME/stale.lock"})");
    QCOMPARE(plan.changes.value(0).kind, Change::Kind::Remove);
    QCOMPARE(plan.changes.value(0).path, home.path("stale.lock"));
}

void TestPlans::rightsOfAnothersFileAreForTheAdministrator()
{
    QVERIFY(holdsAsOrdinaryUser([] {
        const Plan plan =
            Home().plan(R"({"rights": "/etc/passwd", "mode": "600", "owner": "daemon"})");
        const auto isCommand = [](const Change &change) {
            return change.kind == Change::Kind::Command;
        };
        return plan.changes.size() == 2 &&
               std::all_of(plan.changes.begin(), plan.changes.end(), isCommand) &&
               plan.changes.at(1).command.join(QLatin1Char(' ')) ==
                   QLatin1String("chmod 600 -- /etc/passwd");
    }));
    const Home home;
    chmod(QFile::encodeName(home.write("a", "")).constData(), 0444);
    const Plan plan = home.plan(R"({"rights": "$HOME/a", "mode": "u+w,o-r"})");
    QCOMPARE(plan.changes.value(0).kind, Change::Kind::Rights);
    QCOMPARE(*plan.changes.value(0).mode, mode_t(0640));
}

void TestPlans::aDefaultApplicationGoesToTheUsersList()
{
    const Home home;
    home.write(".config/mimeapps.list", "[Default Applications]\ntext/html=b.desktop\n");
    const Plan plan =
        home.plan(R"({"defaultApplication": "text/plain", "entry": "editor.desktop"})");
    QCOMPARE(plan.refusal, QString());
    QCOMPARE(plan.changes.value(0).path, home.path(".config/mimeapps.list"));
    QVERIFY(plan.changes.value(0).after->contains("text/plain=editor.desktop\n"));
    QVERIFY(!home.plan(R"({"defaultApplication": "text/plain", "entry": "../x.desktop"})")
                 .refusal.isEmpty());
}

void TestPlans::copiesLinksAndDirectoriesAreMade()
{
    const Home home;
    home.write("default", "d");
    const Plan plan = home.plan(R"({"directory": "$HOME/new", "mode": "700"},
        {"copy": "$HOME/default", "to": "$HOME/new/copy", "mode": "600"},
        {"link": "$HOME/new/link", "to": "$HOME/default"},
        {"write": "$HOME/new/file", "content": "x"})");
    QCOMPARE(plan.refusal, QString());
    QCOMPARE(plan.changes.size(), 4);
    QCOMPARE(plan.changes.at(0).entry, Change::Entry::Directory);
    QCOMPARE(*plan.changes.at(1).after, QByteArray("d"));
    QCOMPARE(*plan.changes.at(1).mode, mode_t(0600));
    QCOMPARE(plan.changes.at(2).target, home.path("default"));
}

void TestPlans::severalCasesShareOnePlan()
{
    const Home home;
    const Plan plan =
        home.planOfCases(R"({"directory": "$HOME/d"}, {"write": "$HOME/d/{name}", "content": "x"})",
                         {{{QStringLiteral("name"), Value::ofText(QStringLiteral("one"))}},
                          {{QStringLiteral("name"), Value::ofText(QStringLiteral("two"))}}});
    QCOMPARE(plan.refusal, QString());
    QStringList paths;
    for (const Change &change : plan.changes)
        paths.append(change.path);
    QCOMPARE(paths, QStringList({home.path("d"), home.path("d/one"), home.path("d/two")}));
}

void TestPlans::aProcessIsNamedWithItsStart()
{
    const Plan plan =
        Home().plan(R"({"end": "{pid}"})", {{QStringLiteral("pid"), Value::ofNumber(getpid())}});
    QCOMPARE(plan.changes.value(0).kind, Change::Kind::End);
    QCOMPARE(plan.changes.value(0).process, qint64(getpid()));
    QVERIFY(plan.changes.value(0).processStart > 0);
    QVERIFY(!Home().plan(R"({"end": 999999999})").refusal.isEmpty());
    QVERIFY(!Home().plan(R"({"end": 1})").refusal.isEmpty());
}

void TestPlans::aLinkOutOfTheTreeIsNotFollowedToAnothersFile()
{
    QVERIFY(holdsAsOrdinaryUser([] {
        const Home home;
        QFile::link(QStringLiteral("/etc/passwd"), home.path("settings"));
        QFile::link(QStringLiteral("/etc"), home.path("folder"));
        const Plan file = home.plan(R"({"addLine": "$HOME/settings", "text": "x"})");
        const Plan folder = home.plan(R"({"write": "$HOME/folder/new", "content": "x"})");
        return file.changes.isEmpty() && !file.refusal.isEmpty() && folder.changes.isEmpty() &&
               !folder.refusal.isEmpty();
    }));
}

void TestPlans::pathsWithTwoDotsAreRefused()
{
    const Home home;
    const Plan plan = home.plan(R"({"remove": "$HOME/{name}"})",
                                {{QStringLiteral("name"), Value::ofText(QStringLiteral("../x"))}});
    QVERIFY2(plan.refusal.contains(QLatin1String("contains \"..\"")), qPrintable(plan.refusal));
    QVERIFY(plan.changes.isEmpty());
}

void TestPlans::nothingIsOverwrittenThatIsThere()
{
    const Home home;
    home.write("a", "1");
    home.write("b", "2");
    QVERIFY(!home.plan(R"({"copy": "$HOME/a", "to": "$HOME/b"})").refusal.isEmpty());
    QVERIFY(!home.plan(R"({"write": "$HOME/a", "content": "x"})").refusal.isEmpty());
    QVERIFY(!home.plan(R"({"link": "$HOME/a", "to": "/x"})").refusal.isEmpty());
    QCOMPARE(home.plan(R"({"copy": "$HOME/a", "to": "$HOME/b", "replace": true})").changes.size(),
             1);
}

void TestPlans::planningWritesNothing()
{
    const Home home;
    const QByteArray path = QFile::encodeName(home.write("a", "1"));
    // An old time of access would be renewed by reading.
    const timespec old[2] = {{1000, 0}, {2000, 0}};
    utimensat(AT_FDCWD, path.constData(), old, 0);
    home.plan(R"({"set": "$HOME/a", "format": "ini", "key": ["x", "y"], "value": "2"},
                 {"aside": "$HOME/a"}, {"write": "$HOME/b", "content": "x"})");
    struct stat state;
    QCOMPARE(stat(path.constData(), &state), 0);
    QCOMPARE(state.st_atim.tv_sec, time_t(1000));
    QCOMPARE(QDir(home.path(".")).entryList(QDir::Files), QStringList(QStringLiteral("a")));
}

QTEST_GUILESS_MAIN(TestPlans)
#include "tst_plans.moc"
