#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>

#include <unistd.h>

#include "helio/processes/processend.h"
#include "helio/processes/processlist.h"
#include "helio/processes/programlooks.h"
#include "tests/support/patience.h"

using helio::ListedProcess;
using helio::ProcessEnd;

namespace {

/// A program that is no child of the test, as most are none of the window; killed at the end.
class Stranger
{
public:
    explicit Stranger(const QString &script)
    {
        QProcess::startDetached(QStringLiteral("bash"), {QStringLiteral("-c"), script},
                                QDir::tempPath(), &m_id);
    }
    ~Stranger()
    {
        if (m_id > 0)
            kill(static_cast<pid_t>(m_id), SIGKILL);
    }
    Q_DISABLE_COPY(Stranger)

    qint64 id() const { return m_id; }
    /// Its entry once it has become "sleep"; empty if it never does.
    ListedProcess entry() const
    {
        ListedProcess found;
        const auto isThere = [this, &found] {
            const QVector<ListedProcess> all = helio::readProcesses(doctor::thisMachine());
            const auto one =
                std::find_if(all.begin(), all.end(), [this](const ListedProcess &process) {
                    return process.id == m_id &&
                           process.command.startsWith(QLatin1String("sleep "));
                });
            if (one != all.end())
                found = *one;
            return found.id != 0;
        };
        return QTest::qWaitFor(isThere, testsupport::longestWaitMs) ? found : ListedProcess();
    }

private:
    qint64 m_id = 0;
};

bool never()
{
    return false;
}

void write(const QString &path, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(path.section(QLatin1Char('/'), 0, -2)));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

class ProcessesTest : public QObject
{
    Q_OBJECT

private slots:
    void everyProcessIsListedWithWhatItIs();
    void familyHasAllBelow();
    void oneThatIsAskedEnds();
    void oneThatIgnoresItIsForced();
    void onlyTheMeantOneIsEnded();
    void machineSaysHowBusyItIs();
    void programsLookAsTheDesktopShowsThem();
};

void ProcessesTest::everyProcessIsListedWithWhatItIs()
{
    const Stranger sleeper(QStringLiteral("exec sleep 600.25"));
    const ListedProcess entry = sleeper.entry();
    QCOMPARE(entry.id, sleeper.id());
    QCOMPARE(entry.program, QStringLiteral("sleep"));
    QCOMPARE(entry.command, QStringLiteral("sleep 600.25"));
    QCOMPARE(entry.user, getuid());
    QVERIFY(entry.start > 0);
    QVERIFY(entry.memory > 0);
}

void ProcessesTest::familyHasAllBelow()
{
    QVector<ListedProcess> processes(4);
    const QVector<QPair<int, int>> pairs{{1, 0}, {5, 1}, {9, 5}, {7, 1}};
    std::transform(pairs.begin(), pairs.end(), processes.begin(), [](const auto &pair) {
        ListedProcess process;
        process.id = pair.first;
        process.parent = pair.second;
        return process;
    });
    QVector<qint64> family = helio::familyOf(5, processes);
    std::sort(family.begin(), family.end());
    QCOMPARE(family, (QVector<qint64>{5, 9}));
}

void ProcessesTest::oneThatIsAskedEnds()
{
    const Stranger sleeper(QStringLiteral("exec sleep 600"));
    const ListedProcess entry = sleeper.entry();
    const ProcessEnd end = helio::endProcess(entry.id, entry.start, false, never);
    QCOMPARE(end.reason, QString());
    QCOMPARE(end.kind, ProcessEnd::Kind::Ended);
}

void ProcessesTest::oneThatIgnoresItIsForced()
{
    const Stranger stubborn(QStringLiteral("trap '' TERM; exec sleep 600"));
    const ListedProcess entry = stubborn.entry();
    int looks = 0;
    const auto soon = [&looks] { return ++looks > 3; };
    QCOMPARE(helio::endProcess(entry.id, entry.start, false, soon).kind,
             ProcessEnd::Kind::Cancelled);
    QCOMPARE(kill(static_cast<pid_t>(entry.id), 0), 0);
    QCOMPARE(helio::endProcess(entry.id, entry.start, true, never).kind, ProcessEnd::Kind::Ended);
}

void ProcessesTest::onlyTheMeantOneIsEnded()
{
    const Stranger sleeper(QStringLiteral("exec sleep 600"));
    const ListedProcess entry = sleeper.entry();
    const auto kindOf = [](qint64 id, quint64 start) {
        return helio::endProcess(id, start, true, never).kind;
    };
    QCOMPARE(kindOf(entry.id, entry.start + 1), ProcessEnd::Kind::Refused);
    QCOMPARE(kindOf(getpid(), 0), ProcessEnd::Kind::Refused);
    QCOMPARE(kindOf(1, 0), ProcessEnd::Kind::Refused);
    QCOMPARE(kindOf(-1, 0), ProcessEnd::Kind::Refused);
    QCOMPARE(kill(static_cast<pid_t>(entry.id), 0), 0);
}

void ProcessesTest::machineSaysHowBusyItIs()
{
    const QTemporaryDir root;
    doctor::Machine machine;
    machine.root = root.path();
    write(root.filePath(QStringLiteral("proc/meminfo")),
          "MemTotal:       1000 kB\nMemAvailable:    400 kB\nSwapTotal:       10 kB\n");
    write(root.filePath(QStringLiteral("proc/loadavg")), "0.50 1.25 2.00 1/100 42\n");
    write(
        root.filePath(QStringLiteral("proc/pressure/io")),
        "some avg10=1.50 avg60=2.00 avg300=0.25 total=1\nfull avg10=9 avg60=9 avg300=9 total=1\n");
    const QJsonObject load = helio::machineLoad(machine);
    const QJsonObject memory = load.value(QStringLiteral("memory")).toObject();
    QCOMPARE(memory.value(QStringLiteral("available")).toDouble(), 400.0 * 1024);
    QVERIFY(!memory.contains(QStringLiteral("swapFree")));
    QCOMPARE(load.value(QStringLiteral("load")).toArray(), (QJsonArray{0.5, 1.25, 2.0}));
    const QJsonObject waited{{QStringLiteral("io"), QJsonArray{1.5, 2.0, 0.25}}};
    QCOMPARE(load.value(QStringLiteral("pressure")).toObject(), waited);
}

void ProcessesTest::programsLookAsTheDesktopShowsThem()
{
    const QTemporaryDir data;
    const QString program = data.filePath(QStringLiteral("bin/drawing"));
    write(program, "#!/bin/sh\n");
    QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
    const auto entry = [&program](const QByteArray &name, const QByteArray &more) {
        return "[Desktop Entry]\nType=Application\nName=" + name + "\nName[zh_CN]=" + name +
               "zh\nIcon=pen\nExec=" + program.toUtf8() + more + '\n';
    };
    write(data.filePath(QStringLiteral("applications/a.desktop")), entry("Part", " --part %U"));
    write(data.filePath(QStringLiteral("applications/b.desktop")), entry("Whole", " %U"));
    write(data.filePath(QStringLiteral("icons/hicolor/32x32/apps/pen.png")), "pixels");
    doctor::Machine machine = doctor::thisMachine();
    machine.environment.insert(QStringLiteral("XDG_DATA_HOME"), data.path());
    machine.environment.insert(QStringLiteral("XDG_DATA_DIRS"), data.path());
    const auto look = [&machine](const QString &name, const QString &language) {
        return helio::programLooks({name}, language, machine).value(name).toObject();
    };
    const QString file = QStringLiteral("drawing.bin");
    QCOMPARE(look(file, QStringLiteral("en")).value(QStringLiteral("title")).toString(),
             QStringLiteral("Whole"));
    QCOMPARE(look(file, QStringLiteral("zh_CN")).value(QStringLiteral("title")).toString(),
             QStringLiteral("Wholezh"));
    QCOMPARE(look(file, QStringLiteral("en")).value(QStringLiteral("icon")).toString(),
             QStringLiteral("data:image/png;base64,cGl4ZWxz"));
    QVERIFY(look(QStringLiteral("other"), QStringLiteral("en")).isEmpty());
}

QTEST_GUILESS_MAIN(ProcessesTest)
#include "tst_processes.moc"
