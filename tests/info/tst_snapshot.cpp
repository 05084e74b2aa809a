#include <QDateTime>
#include <QDir>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "info/kinfohelp.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using namespace OfficeAssiant;
using testsupport::FakePrograms;
using testsupport::PrivateHome;

namespace {

QString setupPath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/cfgs/setup.cfg");
}

void writeSetup(const QByteArray &content)
{
    QDir().mkpath(QFileInfo(setupPath()).path());
    QFile file(setupPath());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

/// A path in the private home with the given mode and a known time.
QString makePath(const char *name, bool isDirectory, mode_t mode)
{
    const QString path = PrivateHome::current().path() + QLatin1Char('/') + QLatin1String(name);
    if (isDirectory)
        QDir().mkpath(path);
    else
        PrivateHome::current().writeFile(QLatin1String(name), "x");
    if (::chmod(QFile::encodeName(path).constData(), mode) != 0)
        qFatal("cannot change the mode of %s", name);
    return path;
}

QString ownerAndGroup()
{
    return QString::fromUtf8(::getpwuid(::getuid())->pw_name) + QLatin1Char('|') +
           QString::fromUtf8(::getgrgid(::getgid())->gr_name);
}

} // namespace

/// The snapshot of the machine, and the details of often-used paths.
class SnapshotTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QDir(QFileInfo(setupPath()).path()).removeRecursively(); }

    void theVersionComesFromTheSetupConfiguration_data()
    {
        QTest::addColumn<QByteArray>("setup");
        QTest::addColumn<QString>("version");
        QTest::newRow("whole")
            << QByteArray("[Version]\nMajorVersion=12\nFirstVersion=1\nSecondVersion=2\n"
                          "Version=1234\n")
            << QStringLiteral("Version:12.1.2.1234");
        QTest::newRow("without the second number")
            << QByteArray("[Version]\nMajorVersion=12\nFirstVersion=1\nVersion=1234\n")
            << QStringLiteral("Version:12.1.0.1234");
        QTest::newRow("keys of another group") << QByteArray("MajorVersion=1\n[Other]\nVersion=5\n")
                                               << QStringLiteral("Version:0.0.0.0");
        QTest::newRow("place holders in a value")
            << QByteArray("[Version]\nMajorVersion=%2%1\nFirstVersion=7\n")
            << QStringLiteral("Version:%2%1.7.0.0");
        QTest::newRow("garbage") << QByteArray("\0\xff[[[\n\n=", 9)
                                 << QStringLiteral("Version:0.0.0.0");
        QTest::newRow("empty") << QByteArray() << QStringLiteral("Version:0.0.0.0");
    }

    void theVersionComesFromTheSetupConfiguration()
    {
        QFETCH(QByteArray, setup);
        QFETCH(QString, version);
        writeSetup(setup);
        QCOMPARE(KInfoHelp().getVersionInfo(), version);
    }

    void aMissingSetupConfigurationIsVersionZero()
    {
        QCOMPARE(KInfoHelp().getVersionInfo(), QStringLiteral("Version:0.0.0.0"));
    }

    void theSnapshotJoinsTheProbesWithBars()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("bash"), "printf 'Firefox 1\\nChrome 2\\n'");
        programs.add(QStringLiteral("fc-list"), "printf 'b \\na \\n'");
        programs.add(QStringLiteral("cut"), "cat > /dev/null; printf ' one\\n two\\n'");
        programs.add(QStringLiteral("env"), "printf 'B=1\\nA=2\\n'");
        KInfoHelp info;
        const QJsonObject snapshot = info.environmentSnapshot();
        QCOMPARE(snapshot.keys(),
                 QStringList({QStringLiteral("browserinfo"), QStringLiteral("cpuInfo"),
                              QStringLiteral("envInfo"), QStringLiteral("fontinfo"),
                              QStringLiteral("officeinfo"), QStringLiteral("sysinfo"),
                              QStringLiteral("vyrinfo")}));
        QCOMPARE(text(snapshot, "sysinfo"), info.getKernelInfo());
        QCOMPARE(text(snapshot, "vyrinfo"), QStringLiteral("Version:0.0.0.0"));
        QCOMPARE(text(snapshot, "officeinfo"), info.getOtherOfficeInfo().join(QLatin1Char('|')));
        QCOMPARE(text(snapshot, "browserinfo"), QStringLiteral("Firefox 1|Chrome 2|\ufffd"));
        QCOMPARE(text(snapshot, "fontinfo"), QStringLiteral("a |b "));
        QCOMPARE(text(snapshot, "cpuInfo"), QStringLiteral(" one| two"));
        QCOMPARE(text(snapshot, "envInfo"), QStringLiteral("B=1|A=2"));
    }

    void anEmptyFontListIsAnEmptyText()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("fc-list"), "exit 0");
        const QJsonObject snapshot = KInfoHelp().environmentSnapshot();
        QCOMPARE(snapshot.value(QLatin1String("fontinfo")), QJsonValue(QString()));
    }

    void theProbesRunInTheirOrder()
    {
        const FakePrograms programs;
        for (const char *tool : {"bash", "fc-list", "cut", "env"})
            programs.add(QLatin1String(tool), "echo " + QByteArray(tool) + " >> \"$HOME/order\"");
        KInfoHelp().environmentSnapshot();
        QCOMPARE(testsupport::readFile(PrivateHome::current().path() + QStringLiteral("/order")),
                 QByteArray("bash\nfc-list\ncut\nenv\n"));
    }

    void permissionsAreElevenDigitsAndHyphens_data()
    {
        QTest::addColumn<bool>("isDirectory");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("permissions");
        QTest::newRow("file 0644") << false << 0644 << QStringLiteral("110-100-100");
        QTest::newRow("directory 0755") << true << 0755 << QStringLiteral("111-101-101");
        QTest::newRow("nothing") << false << 0 << QStringLiteral("000-000-000");
        QTest::newRow("everything") << false << 07777 << QStringLiteral("111-111-111");
        QTest::newRow("each right once") << false << 0421 << QStringLiteral("100-010-001");
    }

    void permissionsAreElevenDigitsAndHyphens()
    {
        QFETCH(bool, isDirectory);
        QFETCH(int, mode);
        QFETCH(QString, permissions);
        const QString path =
            makePath(QTest::currentDataTag(), isDirectory, static_cast<mode_t>(mode));
        KInfoHelp info;
        info.addOftenFile(QStringLiteral("probe"), path);
        const QString time = QFileInfo(path).lastModified().toString(QStringLiteral("hh:mm:ss"));
        QCOMPARE(text(info.extractFileInfo(), "probe"),
                 ownerAndGroup() + QLatin1Char('|') + permissions + QLatin1Char('|') + time);
        const FilePermEntry &entry = info.oftenFiles().last();
        QCOMPARE(entry.owner + QLatin1Char('|') + entry.group, ownerAndGroup());
        QCOMPARE(entry.permissions, permissions);
        QCOMPARE(entry.modified, time);
    }

    void aMissingPathIsThreeBars()
    {
        KInfoHelp info;
        info.addOftenFile(QStringLiteral("missing"), QStringLiteral("/nonexistent/path"));
        QCOMPARE(text(info.extractFileInfo(), "missing"), QStringLiteral("|||"));
    }

    void whatVanishedIsForgottenAtTheNextCall()
    {
        const QString path = makePath("vanishing", false, 0600);
        KInfoHelp info;
        info.addOftenFile(QStringLiteral("vanishing"), path);
        info.extractFileInfo();
        QVERIFY(!info.oftenFiles().last().owner.isEmpty());
        QVERIFY(QFile::remove(path));
        QCOMPARE(text(info.extractFileInfo(), "vanishing"), QStringLiteral("|||"));
        QVERIFY(info.oftenFiles().last().owner.isEmpty());
    }

    void theCommandsAnswerTheObjects()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("env"), "echo A=1");
        testsupport::RecordingShell shell;
        const QJsonObject snapshot =
            shell.call(QStringLiteral("stratcheckenv")).value(QLatin1String("result")).toObject();
        QCOMPARE(text(snapshot, "envInfo"), QStringLiteral("A=1"));
        QCOMPARE(snapshot.size(), 7);
        const QJsonObject details = shell.call(QStringLiteral("stratextractfileinfo"))
                                        .value(QLatin1String("result"))
                                        .toObject();
        QCOMPARE(details.keys(),
                 QStringList({QStringLiteral(".config"), QStringLiteral("Office.conf"),
                              QStringLiteral("Orvane")}));
        QCOMPARE(text(details, "Office.conf"), QStringLiteral("|||"));
    }

private:
    static QString text(const QJsonObject &object, const char *key)
    {
        return object.value(QLatin1String(key)).toString(QStringLiteral("missing"));
    }
};

HEADLESS_TEST_MAIN(SnapshotTest)
#include "tst_snapshot.moc"
