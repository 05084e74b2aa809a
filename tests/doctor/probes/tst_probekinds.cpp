#include <QDir>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include "doctor/probes/facts.h"
#include "doctor/probes/probe.h"

using namespace doctor;

namespace {

/// A machine with what a test writes, or the real one.
class Scene
{
public:
    enum class Kind {
        Private,
        Real
    };

    explicit Scene(Kind kind = Kind::Private)
    {
        if (kind == Kind::Real) {
            m_machine = thisMachine();
            return;
        }
        m_machine.root = m_directory.path();
        m_machine.user = geteuid();
        m_machine.environment = {{QStringLiteral("HOME"), QStringLiteral("/home/mira")},
                                 {QStringLiteral("USER"), QStringLiteral("mira")}};
        write("/etc/passwd",
              "mira:x:" + QByteArray::number(geteuid()) + ":100::/home/mira:/bin/sh\n");
    }

    void write(const char *path, const QByteArray &content) const
    {
        const QString located = m_machine.located(QLatin1String(path));
        QDir().mkpath(QFileInfo(located).path());
        QFile file(located);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", path);
    }

    void link(const char *path, const char *target) const
    {
        const QString located = m_machine.located(QLatin1String(path));
        QDir().mkpath(QFileInfo(located).path());
        if (!QFile::link(QLatin1String(target), located))
            qFatal("cannot link %s", path);
    }

    void set(const char *name, const char *value)
    {
        m_machine.environment.insert(QLatin1String(name), QLatin1String(value));
    }

    Observed look(const char *kind, const RawArguments &more = {}, const char *main = "true")
    {
        RawArguments arguments = more;
        arguments.insert(QLatin1String(kind), {QLatin1String(main)});
        const Deadline deadline(std::chrono::seconds(10));
        Facts facts;
        return probeKindNamed(QLatin1String(kind))
            ->look(Arguments(arguments), {m_machine, deadline, facts});
    }

    /// A value of the first observation, as people read it.
    QString value(const char *kind, const char *main, const char *name,
                  const RawArguments &more = {})
    {
        const Observed observed = look(kind, more, main);
        if (observed.seen.isEmpty())
            return QStringLiteral("nothing: ") + observed.problem;
        const Values &values = observed.seen.first().values;
        return values.contains(QLatin1String(name)) ? values.value(QLatin1String(name)).shown()
                                                    : QStringLiteral("missing");
    }

    Machine &machine() { return m_machine; }

private:
    QTemporaryDir m_directory;
    Machine m_machine;
};

QString yes()
{
    return QStringLiteral("true");
}

QString no()
{
    return QStringLiteral("false");
}

} // namespace

class TestProbeKinds : public QObject
{
    Q_OBJECT

private slots:
    void everyValueIsOneOfItsKind();
    void filesAndLinks();
    void keysOfAllFormats();
    void linesAndTexts();
    void linesThatCannotMatchAreCounted();
    void locksAndSums();
    void processesAndTheirEnvironment();
    void packagesOfDpkg();
    void librariesAreNotLoaded();
    void fontsAreReadFromTheirFiles();
    void defaultsOfMimeTypesFollowTheLists();
    void mountsAndDisks();
    void mountsThatMightHangAreNotNear();
    void patternsMatchNoShareThatMightHang();
    void patternsFollowNoLinkToAShareThatMightHang();
    void portsAndUrls();
    void programsAreRunOnlyFromTheList();
    void accountsAndGroups();
    void machineAndSession();
    void aBusThatIsNotThereIsNotStarted();
};

/// Runs each kind once where nothing is, and looks at what it gives.
void TestProbeKinds::everyValueIsOneOfItsKind()
{
    Scene scene(Scene::Kind::Real);
    const QHash<QString, QString> mains{
        {QStringLiteral("file"), QStringLiteral("/etc/*")},
        {QStringLiteral("lock"), QStringLiteral("/etc/hosts")},
        {QStringLiteral("port"), QStringLiteral("1")},
        {QStringLiteral("url"), QStringLiteral("http://127.0.0.1:1/")},
        {QStringLiteral("programVersion"), QStringLiteral("bash")},
        {QStringLiteral("resourceLimit"), QStringLiteral("core")},
        {QStringLiteral("printer"), QStringLiteral("*")}};
    for (const ProbeKind *kind : probeKinds()) {
        const QString name = QLatin1String(kind->name);
        const QString main = mains.value(name, QStringLiteral("/etc/os-release"));
        RawArguments more{{QStringLiteral("key"), {QStringLiteral("ID")}},
                          {QStringLiteral("item"), {QStringLiteral("/x")}},
                          {QStringLiteral("variable"), {QStringLiteral("HOME")}},
                          {QStringLiteral("pattern"), {QStringLiteral("(D)")}}};
        const Observed observed = scene.look(kind->name, more, main.toLatin1().constData());
        QVERIFY2(observed.problem.isEmpty() || observed.seen.isEmpty(), kind->name);
        for (const Observation &seen : observed.seen) {
            for (auto value = seen.values.begin(); value != seen.values.end(); ++value) {
                const std::optional<ValueType> type = valueTypeOf(*kind, value.key());
                const bool isFileOfLock = name == QLatin1String("lock") && !type;
                QVERIFY2(isFileOfLock || (type && *type == value->type),
                         qPrintable(name + QLatin1Char('.') + value.key()));
            }
        }
    }
}

void TestProbeKinds::filesAndLinks()
{
    Scene scene;
    scene.write("/home/mira/a", "12345");
    chmod(QFile::encodeName(scene.machine().located(QStringLiteral("/home/mira/a"))).constData(),
          0640);
    QFile::link(QStringLiteral("gone"), scene.machine().located(QStringLiteral("/home/mira/link")));
    QCOMPARE(scene.value("file", "/home/mira/a", "mode"), QStringLiteral("640"));
    QCOMPARE(scene.value("file", "/home/mira/a", "size"), QStringLiteral("5 bytes"));
    QCOMPARE(scene.value("file", "/home/mira/a", "owner"), QStringLiteral("mira"));
    QCOMPARE(scene.value("file", "/home/mira/link", "broken"), yes());
    QCOMPARE(scene.value("file", "/home/mira/none", "exists"), no());
    QCOMPARE(scene.value("file", "/home/mira/none", "owner"), QStringLiteral("missing"));
    QCOMPARE(scene.value("files", "/home/mira/*", "count"), QStringLiteral("2"));
    QVERIFY(scene.look("file", {}, "/home/../etc").problem.contains(QLatin1String("..")));
}

void TestProbeKinds::keysOfAllFormats()
{
    Scene scene;
    scene.write("/x.ini", "a=1\n[s]\nb=2\n");
    scene.write("/x.json", "{\"a\": [1, {\"b\": \"c\"}]}");
    scene.write("/x.xml", "<a><b c=\"d\">e</b></a>");
    scene.write("/x.desktop", "[Desktop Entry]\nName=n\nName[de]=m\n");
    const auto key = [](const QStringList &parts) {
        return RawArguments{{QStringLiteral("key"), parts}};
    };
    const QString b = QStringLiteral("b");
    RawArguments inSection = key({b});
    inSection.insert(QStringLiteral("section"), {QStringLiteral("s")});
    QCOMPARE(scene.value("ini", "/x.ini", "value", inSection), QStringLiteral("2"));
    QCOMPARE(scene.value("ini", "/x.ini", "lineNumber", inSection), QStringLiteral("3"));
    QCOMPARE(
        scene.value("json", "/x.json", "value", key({QStringLiteral("a"), QStringLiteral("1"), b})),
        QStringLiteral("c"));
    QCOMPARE(
        scene.value("xml", "/x.xml", "value", key({QStringLiteral("a"), b, QStringLiteral("@c")})),
        QStringLiteral("d"));
    QCOMPARE(scene.value("desktopEntry", "/x.desktop", "value", key({QStringLiteral("Name[de]")})),
             QStringLiteral("m"));
    RawArguments withDefault = key({QStringLiteral("none")});
    withDefault.insert(QStringLiteral("default"), {QStringLiteral("d")});
    QCOMPARE(scene.value("ini", "/none.ini", "value", withDefault), QStringLiteral("d"));
    QCOMPARE(scene.value("ini", "/none.ini", "present", withDefault), no());
}

void TestProbeKinds::linesAndTexts()
{
    Scene scene;
    scene.write("/x", "one=1\r\ntwo=2\ntwo=3");
    const RawArguments two{{QStringLiteral("pattern"), {QStringLiteral("^two=(.*)$")}}};
    const Observed lines = scene.look("line", two, "/x");
    QCOMPARE(lines.seen.size(), 2);
    QCOMPARE(lines.seen.at(1).values.value(QStringLiteral("part1")).text, QStringLiteral("3"));
    QCOMPARE(lines.seen.at(1).where.first().line, 3);
    QCOMPARE(scene.value("compare", "two=x", "part1", two), QStringLiteral("x"));
}

void TestProbeKinds::linesThatCannotMatchAreCounted()
{
    Scene scene;
    scene.write("/x", "\n\none\nname=1\ntwo\nname=\nnames\n\nname=2\r\n");
    const RawArguments named{{QStringLiteral("pattern"), {QStringLiteral("^name=(\\d)$")}}};
    const Observed lines = scene.look("line", named, "/x");
    QCOMPARE(lines.seen.size(), 2);
    QCOMPARE(lines.seen.at(0).where.first().line, 4);
    QCOMPARE(lines.seen.at(1).where.first().line, 9);
    QCOMPARE(lines.seen.at(1).values.value(QStringLiteral("text")).text, QStringLiteral("name=2"));
}

void TestProbeKinds::locksAndSums()
{
    Scene scene;
    scene.write("/a.lock", "77\n");
    QCOMPARE(scene.value("lock", "/a.lock", "stale"), yes());
    scene.write("/proc/77/stat", "77 (x) S");
    QCOMPARE(scene.value("lock", "/a.lock", "stale"), no());
    scene.write("/x", "abc");
    QVERIFY(scene.value("checksum", "/x", "sha256").startsWith(QLatin1String("ba7816bf")));
}

void TestProbeKinds::processesAndTheirEnvironment()
{
    Scene scene(Scene::Kind::Real);
    QProcess sleeper;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DOCTOR_TEST"), QStringLiteral("seen"));
    sleeper.setProcessEnvironment(environment);
    sleeper.start(QStringLiteral("sleep"), {QStringLiteral("60")});
    QVERIFY(sleeper.waitForStarted());
    QCOMPARE(scene.value("process", "sleep", "running"), yes());
    bool isSeen = false;
    const RawArguments variable{{QStringLiteral("variable"), {QStringLiteral("DOCTOR_TEST")}}};
    for (const Observation &seen : scene.look("processEnvironment", variable, "sleep").seen)
        isSeen = isSeen || seen.values.value(QStringLiteral("value")).text == QLatin1String("seen");
    QVERIFY(isSeen);
    sleeper.kill();
    sleeper.waitForFinished();
    QCOMPARE(scene.value("process", "no-such-process", "running"), no());
}

void TestProbeKinds::packagesOfDpkg()
{
    Scene scene;
    scene.write("/var/lib/dpkg/status",
                "Package: one\nStatus: install ok installed\nVersion: 1:2.3-1\n\n"
                "Package: two\nStatus: deinstall ok config-files\nVersion: 1\n\n"
                "Package: three\nStatus: install ok installed\nVersion: 3");
    QCOMPARE(scene.value("package", "one", "version"), QStringLiteral("1:2.3-1"));
    QCOMPARE(scene.value("package", "two", "installed"), no());
    QCOMPARE(scene.value("package", "three", "version"), QStringLiteral("3"));
}

void TestProbeKinds::librariesAreNotLoaded()
{
    Scene scene(Scene::Kind::Real);
    QCOMPARE(scene.value("library", "libQt5Core.so.5", "loadable"), yes());
    QCOMPARE(scene.value("library", "libnosuch.so.9", "found"), no());
    QCOMPARE(scene.value("library", "/etc/hosts", "found"), no());
}

void TestProbeKinds::fontsAreReadFromTheirFiles()
{
    Scene scene(Scene::Kind::Real);
    if (!QDir(QStringLiteral("/usr/share/fonts/truetype/dejavu")).exists())
        QSKIP("the font is not installed");
    QCOMPARE(scene.value("font", "DejaVu Sans", "installed"), yes());
    QCOMPARE(scene.value("font", "No Such Font", "installed"), no());
}

void TestProbeKinds::defaultsOfMimeTypesFollowTheLists()
{
    Scene scene;
    scene.set("XDG_CURRENT_DESKTOP", "Plasma");
    scene.write("/usr/share/applications/a.desktop", "[Desktop Entry]\nType=Application\n");
    scene.write("/usr/share/applications/b.desktop", "[Desktop Entry]\nType=Application\n");
    scene.write("/usr/share/applications/mimeinfo.cache",
                "[MIME Cache]\ntext/plain=a.desktop;b.desktop;\n");
    QCOMPARE(scene.value("mimeDefault", "text/plain", "entry"), QStringLiteral("a.desktop"));
    QCOMPARE(scene.value("mimeDefault", "text/x-none", "present"), no());
    scene.write("/home/mira/.config/mimeapps.list",
                "[Default Applications]\ntext/plain=gone.desktop;b.desktop\n");
    QCOMPARE(scene.value("mimeDefault", "text/plain", "entry"), QStringLiteral("b.desktop"));
    QCOMPARE(scene.value("mimeDefault", "text/plain", "missing"), QStringLiteral("gone.desktop"));
    scene.write("/home/mira/.config/plasma-mimeapps.list",
                "[Default Applications]\ntext/plain=a.desktop\n");
    QCOMPARE(scene.value("mimeDefault", "text/plain", "list"),
             QStringLiteral("/home/mira/.config/plasma-mimeapps.list"));
    scene.write("/usr/share/mime/globs2", "50:text/plain:*.txt\n80:text/x-strong:*.txt\n");
    QCOMPARE(scene.value("fileType", "a.TXT", "mime"), QStringLiteral("text/x-strong"));
}

void TestProbeKinds::mountsAndDisks()
{
    Scene scene;
    scene.write("/proc/self/mountinfo", "1 0 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
                                        "2 1 8:2 / /home ro,noexec - nfs server:/home\\040x rw\n");
    QCOMPARE(scene.value("mount", "/home/mira", "type"), QStringLiteral("nfs"));
    QCOMPARE(scene.value("mount", "/home/mira", "source"), QStringLiteral("server:/home x"));
    QCOMPARE(scene.value("mount", "/home/mira", "noExec"), yes());
    QCOMPARE(scene.value("mount", "/homely", "point"), QStringLiteral("/"));
    QVERIFY(scene.value("diskSpace", "/", "free") != QStringLiteral("missing"));
}

void TestProbeKinds::mountsThatMightHangAreNotNear()
{
    Scene scene;
    const QByteArray disk = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n";
    const QByteArray team = "2 1 0:40 / /mnt/team rw - nfs4 server:/team rw\n";
    scene.write("/proc/self/mountinfo", disk + team);
    scene.link("/home/mira/team", "../../mnt/./team");
    scene.link("/home/mira/papers", "/home/mira/team/papers");
    scene.link("/home/mira/loop", "loop/a");
    for (const char *path :
         {"/mnt/team", "/mnt/team/none", "/home/mira/team", "/home/mira/papers/plan.odt"})
        QVERIFY2(scene.value("mount", path, "near") == no(), path);
    for (const char *path :
         {"/", "/mnt", "/mnt/teams", "/home/mira/none/plan.odt", "/home/mira/loop/plan.odt"})
        QVERIFY2(scene.value("mount", path, "near") == yes(), path);
    QCOMPARE(scene.value("mount", "/home/mira/papers", "point"), QStringLiteral("/mnt/team"));
    // Without a home on a server nothing works anyway; others on it still may be away.
    scene.write("/proc/self/mountinfo", disk + team +
                                            "3 1 0:41 / /home rw - autofs auto.home rw\n" +
                                            "4 3 0:42 / /home/mira rw - nfs4 server:/mira rw\n" +
                                            "5 3 0:43 / /home/kim rw - nfs4 server:/kim rw\n");
    QCOMPARE(scene.value("mount", "/home/mira/plan.odt", "near"), yes());
    QCOMPARE(scene.value("mount", "/home/kim/plan.odt", "near"), no());
    QCOMPARE(scene.value("mount", "/home/mira/papers/plan.odt", "near"), no());
}

void TestProbeKinds::patternsMatchNoShareThatMightHang()
{
    Scene scene;
    scene.write("/proc/self/mountinfo",
                "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                "2 1 0:40 / /home/mira/team rw - fuse.sshfs server:/team rw\n"
                "3 1 8:2 / /home/mira/stick rw - fuseblk /dev/sdb1 rw\n");
    scene.write("/home/mira/team/plan.odt", "shared");
    scene.write("/home/mira/stick/plan.odt", "own");
    QCOMPARE(scene.look("file", {}, "/home/mira/*/plan.odt").seen.size(), 1);
    QCOMPARE(scene.value("file", "/home/mira/*/plan.odt", "folder"),
             QStringLiteral("/home/mira/stick"));
    QCOMPARE(scene.value("file", "/home/mira/team/plan.odt", "exists"), yes());
}

void TestProbeKinds::patternsFollowNoLinkToAShareThatMightHang()
{
    Scene scene;
    const char *const disk = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n";
    scene.write("/proc/self/mountinfo", disk);
    scene.write("/mnt/team/plan.odt", "shared");
    scene.write("/home/mira/own/plan.odt", "own");
    const QByteArray up = "../../mnt/team";
    scene.link("/home/mira/Documents", up.constData());
    scene.link("/home/mira/plan.odt", (up + "/plan.odt").constData());
    const auto seen = [&scene](const char *pattern) {
        int count = 0;
        for (const Observation &each : scene.look("file", {}, pattern).seen)
            count += each.values.value(QStringLiteral("exists")).number != 0 ? 1 : 0;
        return count;
    };
    constexpr const char *inFolders = "/home/mira/*/plan.odt";
    constexpr const char *inDocuments = "/home/mira/Documents/*.odt";
    constexpr const char *inHome = "/home/mira/*.odt";
    constexpr const char *onShare = "/mnt/team/*.odt";
    QCOMPARE(seen(inFolders), 2);
    QCOMPARE(seen(inDocuments), 1);
    QCOMPARE(seen(inHome), 1);
    scene.write("/proc/self/mountinfo",
                QByteArray(disk) + "2 1 0:40 / /mnt/team rw - nfs4 server:/team rw\n");
    QCOMPARE(seen(inFolders), 1);
    QCOMPARE(seen(inDocuments), 0);
    QCOMPARE(seen(inHome), 0);
    // Who names the share means it.
    QCOMPARE(seen(onShare), 1);
}

void TestProbeKinds::portsAndUrls()
{
    Scene scene(Scene::Kind::Real);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const QByteArray port = QByteArray::number(server.serverPort());
    const RawArguments local{{QStringLiteral("host"), {QStringLiteral("127.0.0.1")}},
                             {QStringLiteral("within"), {QStringLiteral("300ms")}}};
    QCOMPARE(scene.value("port", port.constData(), "reachable", local), yes());
    const QByteArray url = "http://127.0.0.1:" + port + "/x";
    // The server accepts, but answers nothing.
    QCOMPARE(scene.value("url", url.constData(), "status", local), QStringLiteral("0"));
    server.close();
    QCOMPARE(scene.value("port", port.constData(), "reachable", local), no());
    QVERIFY(!scene.look("url", {}, "file:///etc/passwd").problem.isEmpty());
    QVERIFY(!scene.look("url", {}, "http://a/\r\nX: y").problem.isEmpty());
}

void TestProbeKinds::programsAreRunOnlyFromTheList()
{
    Scene scene(Scene::Kind::Real);
    QVERIFY(scene.value("programVersion", "bash", "version").startsWith(QLatin1Char('5')));
    QCOMPARE(scene.value("programVersion", "sleep", "found"), no());
    QCOMPARE(scene.value("command", "sleep", "found"), yes());
    QVERIFY(!scene.look("command", {}, "../bin/sleep").problem.isEmpty());
}

void TestProbeKinds::accountsAndGroups()
{
    Scene scene;
    scene.write("/etc/group", "users:x:100:\nlp:x:7:mira,other\nsudo:x:27:other\n");
    QCOMPARE(scene.value("account", "mira", "own"), yes());
    QCOMPARE(scene.value("account", "nobodyatall", "exists"), no());
    QCOMPARE(scene.value("membership", "lp", "member"), yes());
    QCOMPARE(scene.value("membership", "users", "member"), yes());
    QCOMPARE(scene.value("membership", "sudo", "member"), no());
    QCOMPARE(scene.value("membership", "none", "exists"), no());
}

void TestProbeKinds::machineAndSession()
{
    Scene scene;
    scene.set("XDG_SESSION_TYPE", "wayland");
    scene.write("/etc/os-release", "ID=debian\nVERSION_ID=\"12\"\n");
    scene.write("/proc/sys/kernel/core_pattern", "core\n");
    QCOMPARE(scene.value("distribution", "true", "version"), QStringLiteral("12"));
    QCOMPARE(scene.value("session", "true", "type"), QStringLiteral("wayland"));
    QCOMPARE(scene.value("session", "true", "display"), no());
    QCOMPARE(scene.value("kernelSetting", "kernel/core_pattern", "value"), QStringLiteral("core"));
    QVERIFY(!scene.look("kernelSetting", {}, "../../etc/passwd").problem.isEmpty());
    QCOMPARE(scene.value("resourceLimit", "files", "name"), QStringLiteral("files"));
    QCOMPARE(scene.value("locale", "C", "installed"), yes());
    QCOMPARE(scene.value("locale", "xx_XX.UTF-8", "installed"), no());
}

void TestProbeKinds::aBusThatIsNotThereIsNotStarted()
{
    Scene scene;
    QCOMPARE(scene.value("busName", "org.example", "connected"), no());
    QCOMPARE(scene.value("busName", "org.example", "owned"), no());
}

QTEST_GUILESS_MAIN(TestProbeKinds)
#include "tst_probekinds.moc"
