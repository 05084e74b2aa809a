#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <unistd.h>

#include "doctor/editors/xml/wholexml.h"
#include "doctor/format/checkreader.h"
#include "doctor/machine/packedcopies.h"
#include "doctor/probes/facts.h"
#include "doctor/probes/probe.h"
#include "doctor/repairs/step.h"

using namespace doctor;

namespace {

constexpr char begin[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<oor:items xmlns:oor=\"http://openoffice.org/2001/registry\" "
                         "xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" "
                         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n";
constexpr char first[] =
    "<item oor:path=\"/a\"><prop oor:name=\"x\"><value>1</value></prop></item>\n";
constexpr char second[] = "<item oor:path=\"/b\"><node oor:name=\"n\"/></item>\n";
constexpr char end[] = "</oor:items>\n";

QByteArray number(int value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian<quint32>(static_cast<quint32>(value), bytes.data());
    return bytes;
}

/// As LibreOffice writes it; the oldest copy comes first.
QByteArray packOf(const QVector<QByteArray> &copies)
{
    QByteArray heads = "PACK" + number(copies.size());
    QByteArray bodies;
    for (const QByteArray &copy : copies) {
        const QByteArray packed = qCompress(copy).mid(4);
        heads += number(copy.size()) + number(0) + number(packed.size());
        bodies += packed;
    }
    return heads + bodies;
}

/// A machine of files alone, in whose home plans are made.
class Scene
{
public:
    Scene()
    {
        m_machine.root = m_directory.path();
        m_machine.user = geteuid();
        m_machine.environment = {{QStringLiteral("HOME"), QStringLiteral("/home/mira")}};
    }

    void write(const char *path, const QByteArray &content) const
    {
        const QString located = m_machine.located(QLatin1String(path));
        QDir().mkpath(QFileInfo(located).path());
        QFile file(located);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", path);
    }

    Plan plan(const QByteArray &steps) const
    {
        const CheckFile file = readChecks(
            R"({"id": "a", "title": "a", "look": {"process": "x"}, "finding": {"text": "a"}, "repairs":
               [{"id": "r", "title": "r", "steps": [)" +
                steps + "]}]}",
            QStringLiteral("test.json"));
        for (const Mistake &mistake : file.mistakes)
            qWarning().noquote() << mistake.line << mistake.column << mistake.message;
        return planSteps(file.checks.first().repairs.first().steps, {{}}, m_machine);
    }

    QString command(const QByteArray &steps) const
    {
        const Plan made = plan(steps);
        return made.refusal.isEmpty() ? made.changes.first().command.join(QLatin1Char(' '))
                                      : made.refusal;
    }

    QVector<Observation> look(const char *kind, const char *argument)
    {
        const Deadline deadline(std::chrono::seconds(10));
        Facts facts;
        return probeKindNamed(QLatin1String(kind))
            ->look(Arguments({{QLatin1String(kind), {QLatin1String(argument)}}}),
                   {m_machine, deadline, facts})
            .seen;
    }

    void set(const char *name, const char *value)
    {
        m_machine.environment.insert(QLatin1String(name), QLatin1String(value));
    }

private:
    QTemporaryDir m_directory;
    Machine m_machine;
};

QString shown(const Observation &seen, const char *name)
{
    return seen.values.contains(QLatin1String(name))
               ? seen.values.value(QLatin1String(name)).shown()
               : QStringLiteral("missing");
}

} // namespace

class TestSuiteSteps : public QObject
{
    Q_OBJECT

private slots:
    void theCopiesOfAPackAreReadNewestFirst();
    void aDamagedPackGivesWhatIsWhole();
    void onlyWholeItemsAreKept_data();
    void onlyWholeItemsAreKept();
    void everyTruncationKeepsWholeItems();
    void theNewestWholeCopyIsPutBack();
    void aPackWithoutAWholeCopyIsRefused();
    void nothingIsDoneWhileTheProgramRuns();
    void aPackageIsInstalledAsTheDistributionDoes_data();
    void aPackageIsInstalledAsTheDistributionDoes();
    void exactlyTheLineIsDropped();
    void addressesBecomePaths();
    void languagesAreThoseOfMessages();
};

void TestSuiteSteps::theCopiesOfAPackAreReadNewestFirst()
{
    // Written by LibreOffice 7.4: one copy of four zero bytes.
    const QByteArray real =
        QByteArray::fromHex("5041434b00000001000000042144df1c0000000c78da63606060000000040001");
    QCOMPARE(packedCopies(real, 100), QVector<QByteArray>{QByteArray(4, '\0')});
    QCOMPARE(packedCopies(packOf({"old", "new"}), 100), QVector<QByteArray>({"new", "old"}));
}

void TestSuiteSteps::aDamagedPackGivesWhatIsWhole()
{
    const QByteArray pack = packOf({"old", "new"});
    QVERIFY(packedCopies("", 100).isEmpty());
    QVERIFY(packedCopies("PACK", 100).isEmpty());
    QVERIFY(packedCopies("PACK\xff\xff\xff\xff", 100).isEmpty());
    QVERIFY(packedCopies("other" + pack, 100).isEmpty());
    QCOMPARE(packedCopies(pack.left(pack.size() - 1), 100), QVector<QByteArray>({"old"}));
    QVERIFY(packedCopies(packOf({QByteArray(200, 'x')}), 100).isEmpty());
    for (int length = 0; length < pack.size(); ++length)
        QVERIFY(packedCopies(pack.left(length), 100).size() < 2);
}

void TestSuiteSteps::onlyWholeItemsAreKept_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("kept");
    const QByteArray head = begin;
    const QByteArray both = QByteArray(first) + second;
    QTest::newRow("whole") << head + both + end << head + both + end;
    QTest::newRow("cut off") << head + both.left(both.size() - 5) << head + first + end;
    QTest::newRow("damaged in the middle")
        << head + "<item oor:path=\"/a\"><prop <item oor:path=\"/c\"></prop></item>\n" + second +
               end
        << head + second + end;
    QTest::newRow("zeros") << QByteArray(100, '\0') << head + end;
    QTest::newRow("nothing") << QByteArray() << head + end;
    QTest::newRow("no root") << both << head + both + end;
}

void TestSuiteSteps::onlyWholeItemsAreKept()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, kept);
    QCOMPARE(wholeItems(content), kept);
    QVERIFY(xmlState(kept).isWhole);
}

void TestSuiteSteps::everyTruncationKeepsWholeItems()
{
    const QByteArray content = QByteArray(begin) + first + second + end;
    for (int length = 0; length < content.size(); ++length) {
        const QByteArray kept = wholeItems(content.left(length));
        QVERIFY2(xmlState(kept).isWhole, kept.constData());
        QVERIFY(kept.size() <= content.size() || length < int(sizeof begin));
    }
}

void TestSuiteSteps::theNewestWholeCopyIsPutBack()
{
    const Scene scene;
    const QByteArray good = QByteArray(begin) + first + end;
    scene.write("/home/mira/a.xcu", "damaged");
    scene.write("/home/mira/a.pack", packOf({QByteArray(begin) + end, good, "damaged"}));
    const Plan plan = scene.plan(R"({"restorePacked": "$HOME/a.xcu", "from": "$HOME/a.pack"})");
    QCOMPARE(plan.refusal, QString());
    QCOMPARE(plan.changes.size(), 1);
    QCOMPARE(*plan.changes.first().before, QByteArray("damaged"));
    QCOMPARE(*plan.changes.first().after, good);
}

void TestSuiteSteps::aPackWithoutAWholeCopyIsRefused()
{
    const Scene scene;
    scene.write("/home/mira/a.xcu", "damaged");
    scene.write("/home/mira/a.pack", packOf({"damaged"}));
    QCOMPARE(scene.plan(R"({"restorePacked": "$HOME/a.xcu", "from": "$HOME/a.pack"})").refusal,
             QStringLiteral("/home/mira/a.pack has no copy that is whole"));
}

void TestSuiteSteps::nothingIsDoneWhileTheProgramRuns()
{
    const Scene scene;
    const QByteArray steps =
        R"({"notRunning": "soffice.bin"}, {"write": "$HOME/a", "content": "a"})";
    scene.write("/proc/41/stat", "41 (soffice.binary) S 1");
    scene.write("/proc/self/stat", "42 (soffice.bin) S 1");
    QCOMPARE(scene.plan(steps).refusal, QString());
    scene.write("/proc/43/stat", "43 (soffice.bin) S 1");
    QCOMPARE(scene.plan(steps).refusal,
             QStringLiteral("soffice.bin (process 43) is running: close it first"));
}

void TestSuiteSteps::aPackageIsInstalledAsTheDistributionDoes_data()
{
    QTest::addColumn<QByteArray>("release");
    QTest::addColumn<QByteArray>("step");
    const auto row = [](const char *release, const char *step, const char *command) {
        QTest::newRow(command) << QByteArray(release) << R"({"install": )" + QByteArray(step) + "}";
    };
    const char *math = R"("math", "suite": "libreoffice")";
    row("ID=debian\n", math, "apt-get install libreoffice-math");
    row("ID=fedora\n", math, "dnf install libreoffice-math");
    row("ID=opensuse-leap\nID_LIKE=\"suse opensuse\"\n", math, "zypper install libreoffice-math");
    row("ID=manjaro\nID_LIKE=arch\n", math, "pacman -S libreoffice-fresh");
    row("ID=linuxmint\nID_LIKE=\"ubuntu debian\"\n",
        R"("spelling", "suite": "libreoffice", "language": "fr-FR")",
        "apt-get install hunspell-fr");
    row("ID=debian\n", R"("spelling", "suite": "libreoffice", "language": "de-AT")",
        "apt-get install hunspell-de-at");
    row("ID=debian\n", R"("spelling", "suite": "libreoffice", "language": "de-LU")",
        "apt-get install hunspell-de-de");
    row("ID=fedora\n", R"("spelling", "suite": "libreoffice", "language": "de-AT")",
        "dnf install hunspell-de");
    row("ID=debian\n", R"("help", "suite": "libreoffice", "language": "zh-HK")",
        "apt-get install libreoffice-help-zh-tw");
    row("ID=fedora\n", R"("language", "suite": "libreoffice", "language": "zh-CN")",
        "dnf install libreoffice-langpack-zh-Hans");
    row("ID=void\n", math, "no package for this is known on this distribution");
    row("ID=ubuntu\n", R"("teapot", "suite": "libreoffice")",
        "no package for this is known on this distribution");
}

void TestSuiteSteps::aPackageIsInstalledAsTheDistributionDoes()
{
    QFETCH(QByteArray, release);
    QFETCH(QByteArray, step);
    const Scene scene;
    scene.write("/etc/os-release", release);
    QCOMPARE(scene.command(step),
             QString::fromLatin1(QTest::currentDataTag()).section(QLatin1Char('#'), 0, 0));
}

void TestSuiteSteps::exactlyTheLineIsDropped()
{
    const Scene scene;
    scene.write("/home/mira/a", "xb\nb\nbx\n");
    const Plan plan = scene.plan(R"({"dropLine": "$HOME/a", "text": "b"})");
    QCOMPARE(*plan.changes.first().after, QByteArray("xb\nbx\n"));
    QVERIFY(!scene.plan(R"({"dropLine": "$HOME/a", "text": "c"})").refusal.isEmpty());
}

void TestSuiteSteps::addressesBecomePaths()
{
    Scene scene;
    QCOMPARE(shown(scene.look("fileAddress", "file:///a%20b/c%C3%A9.odt").first(), "path"),
             QString::fromUtf8("/a b/cé.odt"));
    for (const char *other : {"smb://server/a", "file://server/a", "file:///a/../b", "file:a", "",
                              "file:///a%0Ab", "/a"}) {
        const Observation seen = scene.look("fileAddress", other).first();
        QCOMPARE(shown(seen, "local"), QStringLiteral("false"));
        QCOMPARE(shown(seen, "path"), QStringLiteral("missing"));
    }
    QCOMPARE(shown(scene.look("fileAddress", "smb://server/a").first(), "scheme"),
             QStringLiteral("smb"));
}

void TestSuiteSteps::languagesAreThoseOfMessages()
{
    Scene scene;
    QVERIFY(scene.look("userLanguage", "true").isEmpty());
    scene.set("LANGUAGE", "fr_CA:de:C");
    QVERIFY(scene.look("userLanguage", "true").isEmpty());
    scene.set("LANG", "de_AT.UTF-8@euro");
    QVector<Observation> seen = scene.look("userLanguage", "true");
    QCOMPARE(seen.size(), 2);
    QCOMPARE(shown(seen[0], "tag"), QStringLiteral("fr-CA"));
    QCOMPARE(shown(seen[1], "tag"), QStringLiteral("de"));
    scene.set("LC_ALL", "C.UTF-8");
    QVERIFY(scene.look("userLanguage", "true").isEmpty());
}

QTEST_GUILESS_MAIN(TestSuiteSteps)
#include "tst_suitesteps.moc"
