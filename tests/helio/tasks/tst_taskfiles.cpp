#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QProcess>

#include <csignal>

#include "tests/helio/tasks/taskpage.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/privatehome.h"

using testsupport::FakePrograms;
using testsupport::PrivateHome;
using testsupport::readFile;

namespace {

const QString archive = QStringLiteral("task.archive");
const QString updater = QStringLiteral("task.updater");

QString homePath(const QString &name)
{
    return PrivateHome::current().path() + QLatin1Char('/') + name;
}

/// What tar writes about a file, with these arguments before its name.
QByteArray tarOutput(const QStringList &arguments, const QString &file,
                     const QStringList &more = {})
{
    QProcess tar;
    tar.start(QStringLiteral("tar"), arguments + QStringList(file) + more);
    return tar.waitForFinished(testsupport::longestWaitMs) ? tar.readAllStandardOutput()
                                                           : QByteArray();
}

/// A member of an archive by its name in the one folder.
QByteArray memberOf(const QString &file, const QString &name)
{
    return tarOutput({QStringLiteral("-xzOf")}, file,
                     {homePath(QStringLiteral(".local/share/Orvane/tmp/archive/")).mid(1) + name});
}

QJsonObject attached(const QStringList &paths)
{
    QJsonArray files;
    for (const QString &path : paths)
        files.append(QJsonObject{{QStringLiteral("path"), path},
                                 {QStringLiteral("name"), QFileInfo(path).fileName()}});
    return {{QStringLiteral("type"), QStringLiteral("print")},
            {QStringLiteral("description"), QStringLiteral("two\nlines")},
            {QStringLiteral("files"), files},
            {QStringLiteral("dumps"), true},
            {QStringLiteral("settings"), true}};
}

} // namespace

class TaskFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void filesOfAnyNameAreArchived_data();
    void filesOfAnyNameAreArchived();
    void anArchiveHoldsWhatIsWanted();
    void anArchiveReplacesAnEarlierOneWhole();
    void anArchiveThatCannotBeWrittenSaysSo_data();
    void anArchiveThatCannotBeWrittenSaysSo();
    void aFileThatIsMissingEndsTheArchive();
    void nothingIsLeftBesideAnArchive();
    void oneValueOfTheUpdaterChangesAlone();
    void aValueThatCannotBeStoredSaysSo();
    void lookingForShortcutsMakesNoFolder();
    void pathsAreDescribedWhole();
    void dumpsTellProgramAndSignal();
    void dumpsAreKeptAsTheFileSays();
    void theFolderOfDumpsIsOpened();
    void missingFontsHaveTheirSubstitutes();
};

void TaskFilesTest::filesOfAnyNameAreArchived_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"two words.txt",   "a  b.txt",  "a;b.txt",   "$(touch ran).txt",
                             "`touch ran`.txt", "\"q\".txt", "'q'.txt",   "[a].txt",
                             "*.txt",           "?.txt",     "{a,b}.txt", "a&b.txt",
                             "a|b.txt",         "a>b.txt",   "-rf.txt",   "host:a.txt",
                             "文档.txt",        "\\a.txt",   "a\tb.txt",  "~.txt",
                             "#.txt",           "%s.txt"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void TaskFilesTest::filesOfAnyNameAreArchived()
{
    QFETCH(const QString, name);
    TaskPage page;
    const QString file = PrivateHome::current().writeFile(name, name.toUtf8());
    page.chosen = homePath(name + QStringLiteral(".tar.gz"));
    const QJsonObject result = page.run(archive, attached({file}));
    QCOMPARE(word(result, "reason"), QString());
    QCOMPARE(page.opened, QStringList(QFileInfo(page.chosen).path()));
    // tar reads escapes in the names of its arguments.
    QCOMPARE(
        memberOf(page.chosen, QString(name).replace(QLatin1Char('\\'), QStringLiteral("\\\\"))),
        name.toUtf8());
    QVERIFY(!QFileInfo::exists(homePath(QStringLiteral("ran"))) &&
            !QFileInfo::exists(QStringLiteral("ran")));
}

void TaskFilesTest::anArchiveHoldsWhatIsWanted()
{
    TaskPage page;
    PrivateHome::current().writeFile(QStringLiteral(".config/Orvane/Office.conf"), "[6.0]\n");
    PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/dump/vyr_1.dmp"), "d");
    PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/dump/other"), "o");
    page.chosen = homePath(QStringLiteral("whole.tar.gz"));
    QCOMPARE(word(page.run(archive, attached({})), "end"), QStringLiteral("done"));
    QCOMPARE(memberOf(page.chosen, QStringLiteral("Office.conf")), QByteArray("[6.0]\n"));
    QCOMPARE(memberOf(page.chosen, QStringLiteral("vyr_1.dmp")), QByteArray("d"));
    QVERIFY(!tarOutput({QStringLiteral("-tzf")}, page.chosen).contains("other"));
    QCOMPARE(memberOf(page.chosen, QStringLiteral("describe.txt")),
             QStringLiteral("name: %1\ntype: print\ndescribe: two lines\nfile:Office.conf\n"
                            "dumpfile: %2\n")
                 .arg(homePath(QStringLiteral("whole")),
                      homePath(QStringLiteral(".local/share/Orvane/tmp/dump/vyr_1.dmp")))
                 .toUtf8());
    QCOMPARE(QFileInfo(page.chosen).permissions() & (QFile::ReadGroup | QFile::ReadOther), 0);
}

void TaskFilesTest::anArchiveReplacesAnEarlierOneWhole()
{
    TaskPage page;
    page.chosen =
        PrivateHome::current().writeFile(QStringLiteral("old.tar.gz"), QByteArray(100000, 'x'));
    QCOMPARE(word(page.run(archive, attached({})), "end"), QStringLiteral("done"));
    QVERIFY(!memberOf(page.chosen, QStringLiteral("describe.txt")).isEmpty());
    QVERIFY(!readFile(page.chosen).contains("xxxx"));
}

void TaskFilesTest::anArchiveThatCannotBeWrittenSaysSo_data()
{
    QTest::addColumn<QString>("place");
    QTest::newRow("no such directory") << homePath(QStringLiteral("none/a.tar.gz"));
    QTest::newRow("a file system of the kernel") << QStringLiteral("/proc/a.tar.gz");
    QTest::newRow("a full device") << QStringLiteral("/dev/full");
    QTest::newRow("a directory") << PrivateHome::current().path();
}

void TaskFilesTest::anArchiveThatCannotBeWrittenSaysSo()
{
    QFETCH(const QString, place);
    TaskPage page;
    page.chosen = place;
    const QJsonObject result = page.run(archive, attached({}));
    QCOMPARE(word(result, "end"), QStringLiteral("failed"));
    QVERIFY2(word(result, "reason").startsWith(place), qPrintable(word(result, "reason")));
    QVERIFY(page.opened.isEmpty());
}

void TaskFilesTest::aFileThatIsMissingEndsTheArchive()
{
    TaskPage page;
    page.chosen = homePath(QStringLiteral("missing.tar.gz"));
    const QString missing = homePath(QStringLiteral("no such file"));
    const QJsonObject result = page.run(archive, attached({missing}));
    QVERIFY(word(result, "reason").contains(missing));
    QVERIFY(!QFileInfo::exists(page.chosen));
}

void TaskFilesTest::nothingIsLeftBesideAnArchive()
{
    const QDir directory(PrivateHome::current().suiteHome());
    QCOMPARE(directory.entryList({QStringLiteral(".archive-*")}, QDir::AllEntries | QDir::Hidden),
             QStringList());
}

void TaskFilesTest::oneValueOfTheUpdaterChangesAlone()
{
    TaskPage page;
    const QByteArray before = "; why\r\n[update]\r\n; 1 to 60\r\ntimeout = 20\r\nlist=a, b\r\n";
    const QString file = PrivateHome::current().writeFile(QStringLiteral("update.cfg"), before);
    qputenv("HELIO_UPDATE_CFG", QFile::encodeName(file));
    const auto set = [&page](const char *value) {
        return page.run(updater, {{QStringLiteral("key"), QStringLiteral("timeout")},
                                  {QStringLiteral("value"), QLatin1String(value)}});
    };
    QCOMPARE(word(set("30"), "reason"), QString());
    QCOMPARE(readFile(file), QByteArray(before).replace("20", "30"));
    QCOMPARE(word(set("$(x) a=b"), "end"), QStringLiteral("done"));
}

void TaskFilesTest::aValueThatCannotBeStoredSaysSo()
{
    TaskPage page;
    qputenv("HELIO_UPDATE_CFG", QFile::encodeName(homePath(QStringLiteral("none.cfg"))));
    const QJsonObject result = page.run(updater, {{QStringLiteral("key"), QStringLiteral("a")},
                                                  {QStringLiteral("value"), QStringLiteral("b")}});
    QCOMPARE(word(result, "end"), QStringLiteral("failed"));
    QVERIFY(word(result, "reason").contains(QStringLiteral("none.cfg")));
    QVERIFY(!QFileInfo::exists(homePath(QStringLiteral("none.cfg"))));
}

void TaskFilesTest::lookingForShortcutsMakesNoFolder()
{
    TaskPage page;
    const QString user = QStringLiteral("..") + homePath(QStringLiteral("fresh"));
    qputenv("USER", user.toUtf8());
    QVERIFY(QDir().mkdir(homePath(QStringLiteral("fresh"))));
    const auto shortcuts = [&page] {
        return page.run(QStringLiteral("task.shortcuts"))
            .value(QStringLiteral("envelope"))
            .toObject()
            .value(QStringLiteral("result"))
            .toObject();
    };
    QCOMPARE(word(shortcuts(), "mode"), QStringLiteral("helio_independ"));
    QCOMPARE(word(shortcuts(), "icon"), QString());
    QVERIFY(QDir(homePath(QStringLiteral("fresh"))).isEmpty());
    PrivateHome::current().writeFile(QStringLiteral("fresh/Desktop/vyr-office-vyr.desktop"), "x");
    QCOMPARE(word(shortcuts(), "icon"), QStringLiteral("vyr-office-vyr.desktop"));
    PrivateHome::current().writeFile(QStringLiteral("fresh/Desktop/vyr-office-vyr.desktop"),
                                     "[Desktop Entry]\nName=Pen\nExec=true\n");
    const QJsonObject looks = shortcuts().value(QStringLiteral("looks")).toObject();
    QCOMPARE(word(looks.value(QStringLiteral("vyr-office-vyr.desktop")).toObject(), "title"),
             QStringLiteral("Pen"));
}

void TaskFilesTest::pathsAreDescribedWhole()
{
    const QString path = PrivateHome::current().writeFile(QStringLiteral("a b|c\n$(d).conf"), "x");
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    TaskPage page;
    const QJsonArray rows =
        page.run(QStringLiteral("task.paths"),
                 {{QStringLiteral("paths"),
                   QJsonArray{path, QStringLiteral("~/gone"), QStringLiteral("~/.local")}}})
            .value(QStringLiteral("paths"))
            .toArray();
    QCOMPARE(rows.size(), 3);
    const QJsonObject file = rows.at(0).toObject();
    QCOMPARE(word(file, "path"), path);
    QCOMPARE(word(file, "mode"), QStringLiteral("0640"));
    QCOMPARE(word(file, "kind"), QStringLiteral("file"));
    QCOMPARE(file.value(QStringLiteral("size")).toInt(), 1);
    QVERIFY(!rows.at(2).toObject().contains(QStringLiteral("size")));
    QVERIFY(word(file, "changed").endsWith(QLatin1Char('Z')));
    QVERIFY(!rows.at(1)[QStringLiteral("exists")].toBool());
    QCOMPARE(word(rows.at(2).toObject(), "kind"), QStringLiteral("directory"));
}

void TaskFilesTest::dumpsTellProgramAndSignal()
{
    const QString folder = QStringLiteral(".local/share/Orvane/tmp/dump/");
    QDir(homePath(folder)).removeRecursively();
    const auto words = [](const QVector<quint32> &values) {
        QByteArray bytes;
        for (const quint32 value : values) {
            for (int shift = 0; shift < 32; shift += 8)
                bytes.append(char(value >> shift));
        }
        return bytes;
    };
    // Two streams, the second one with the exception at offset 56.
    PrivateHome::current().writeFile(
        folder + QStringLiteral("vyr_1.dmp"),
        "MDMP" + words({0xa793, 2, 32, 0, 0, 0, 0, 4, 0, 0, 6, 168, 56, 77, 0, SIGSEGV}));
    PrivateHome::current().writeFile(folder + QStringLiteral("tbl_2.dmp"),
                                     "MDMP" + words({0xa793, 0xffffffff, 0xffffff00}));
    PrivateHome::current().writeFile(folder + QStringLiteral("a b.txt"), "MDM");
    TaskPage page;
    const QJsonObject result = page.run(QStringLiteral("task.dumps"));
    QCOMPARE(result.value(QStringLiteral("count")).toInt(), 3);
    QMap<QString, QString> found;
    for (const QJsonValue dump : result.value(QStringLiteral("dumps")).toArray())
        found.insert(dump[QStringLiteral("name")].toString(),
                     dump[QStringLiteral("program")].toString() + QLatin1Char(' ') +
                         dump[QStringLiteral("signal")].toString());
    QCOMPARE(found,
             (QMap<QString, QString>{{QStringLiteral("vyr_1.dmp"), QStringLiteral("vyr SIGSEGV")},
                                     {QStringLiteral("tbl_2.dmp"), QStringLiteral("tbl ")},
                                     {QStringLiteral("a b.txt"), QStringLiteral(" ")}}));
}

void TaskFilesTest::dumpsAreKeptAsTheFileSays()
{
    TaskPage page;
    const auto areKept = [&page] {
        return page.run(QStringLiteral("task.dumps")).value(QStringLiteral("kept")).toBool();
    };
    const QString settings = QStringLiteral(".config/Orvane/Office.conf");
    PrivateHome::current().writeFile(settings, "[6.0]\ncommon\\CrashDump\\SaveDump=false\n");
    QVERIFY(!areKept());
    PrivateHome::current().writeFile(settings, "[6.0]\ncommon\\CrashDump\\SaveDump=true\n");
    QVERIFY(areKept());
    QVERIFY(QFile::remove(homePath(settings)));
    QVERIFY(areKept());
}

void TaskFilesTest::theFolderOfDumpsIsOpened()
{
    const QString folder = homePath(QStringLiteral(".local/share/Orvane/tmp/dump"));
    QVERIFY(QDir().mkpath(folder));
    TaskPage page;
    QVERIFY(page.run(QStringLiteral("task.dumpfolder")).value(QStringLiteral("opened")).toBool());
    QCOMPARE(page.opened, QStringList{folder});
    QVERIFY(QDir(folder).removeRecursively());
    QCOMPARE(word(page.run(QStringLiteral("task.dumpfolder")), "end"), QStringLiteral("failed"));
}

void TaskFilesTest::missingFontsHaveTheirSubstitutes()
{
    TaskPage page;
    const FakePrograms programs;
    programs.add(QStringLiteral("fc-match"), "printf 'for %s' \"$4\"");
    programs.add(QStringLiteral("dpkg-query"),
                 "printf 'installed fonts-a\\nconfig-files fonts-b\\n'");
    const QJsonObject result =
        page.run(QStringLiteral("task.substitutes"),
                 {{QStringLiteral("names"), QJsonArray{QStringLiteral("A-b: $(c)")}}});
    const QJsonObject families = result.value(QStringLiteral("families")).toObject();
    QCOMPARE(word(families, "A-b: $(c)"), QStringLiteral("for A\\-b\\: $(c)"));
    QCOMPARE(result.value(QStringLiteral("packages")).toArray(),
             QJsonArray{QStringLiteral("fonts-a")});
}

int main(int argc, char *argv[])
{
    const PrivateHome home;
    QCoreApplication application(argc, argv);
    TaskFilesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_taskfiles.moc"
