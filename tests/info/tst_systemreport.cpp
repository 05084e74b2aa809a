#include <QTemporaryDir>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "info/kinfohelp.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/shell/headlesstest.h"

using namespace OfficeAssiant;
using testsupport::FakePrograms;
using testsupport::readFile;

namespace {

constexpr ReportSections noSection{false, false, false, false, false, false, false};

QByteArray section(const QByteArray &name, const QByteArray &content)
{
    return "************" + name + "-begin***********\r\n" + content + "************" + name +
           "-end***********\r\n";
}

QByteArray kernelLine()
{
    utsname names{};
    ::uname(&names);
    return QByteArray(names.sysname)
        .append(' ')
        .append(names.release)
        .append("  ")
        .append(names.machine);
}

QByteArray kernelSection()
{
    return section("kernel", kernelLine() + "\r\n");
}

QByteArray userSection()
{
    return section("user", QByteArray(::getpwuid(::getuid())->pw_name) + "\r\n");
}

const QByteArray browserSection = "************browser-begin***********\r\n"
                                  "Firefox 1\r\nChrome 2\r\n\xef\xbf\xbd\r\n"
                                  "************browser-end***********\r\n";
const QByteArray cpuSection = "************cpu-begin***********\r\n"
                              " one\r\n two\r\n three\r\n four\r\n"
                              " one\n two\n three\n four\r\n"
                              "************cpu-end***********\r\n";
const QByteArray fontSection = "************font-begin***********\r\n"
                               "b Regular \r\n\xe6\x96\x87 Bold \r\na Regular \r\n"
                               "************font-end***********\r\n";
const QByteArray envSection = "************env-begin***********\r\n"
                              "B=2\r\nA=1\r\n"
                              "************env-end***********\r\n";

/// The probe's lines: the other suites are those of the real system.
QByteArray otherOfficeSection()
{
    QByteArray content;
    const QStringList lines = KInfoHelp().getOtherOfficeInfo();
    for (const QString &line : lines)
        content += line.toUtf8() + "\r\n";
    return section("otheroffice", content);
}

/// Fakes every tool that the report runs.
class FakeTools : public FakePrograms
{
public:
    FakeTools()
    {
        // The script of the browser probe is run by bash.
        add(QStringLiteral("bash"), "printf 'Firefox 1\\n\\nChrome 2\\n'");
        add(QStringLiteral("cut"), "cat > /dev/null; printf ' one\\n two\\n three\\n four\\n'");
        add(QStringLiteral("fc-list"),
            "printf 'b Regular \\n\\n\\346\\226\\207 Bold \\na Regular \\n'");
        add(QStringLiteral("env"), "printf 'B=2\\n\\nA=1\\n'");
    }
};

} // namespace

/// The system information report, byte for byte.
class SystemReportTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("LC_ALL", "C.UTF-8");
        QVERIFY(m_directory.isValid());
    }

    void init() { QFile::remove(path()); }

    void allSectionsStandInTheirOrder()
    {
        const FakeTools tools;
        KInfoHelp().writeSysInfoReport(path(), ReportSections());
        QCOMPARE(readFile(path()), kernelSection() + browserSection + cpuSection + fontSection +
                                       userSection() + envSection + otherOfficeSection());
    }

    void eachSectionCanStandAlone_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QByteArray>("expected");
        int index = 0;
        QTest::newRow("kernel") << index++ << kernelSection();
        QTest::newRow("browser") << index++ << browserSection;
        QTest::newRow("cpu") << index++ << cpuSection;
        QTest::newRow("font") << index++ << fontSection;
        QTest::newRow("user") << index++ << userSection();
        QTest::newRow("env") << index++ << envSection;
        QTest::newRow("other office") << index++ << otherOfficeSection();
    }

    void eachSectionCanStandAlone()
    {
        QFETCH(int, index);
        QFETCH(QByteArray, expected);
        const auto chosen = [index](int section) { return section == index; };
        const ReportSections sections{chosen(0), chosen(1), chosen(2), chosen(3),
                                      chosen(4), chosen(5), chosen(6)};
        const FakeTools tools;
        KInfoHelp().writeSysInfoReport(path(), sections);
        QCOMPARE(readFile(path()), expected);
    }

    void allFlagsFalseMakeAnEmptyFile()
    {
        KInfoHelp().writeSysInfoReport(path(), noSection);
        QVERIFY(QFileInfo::exists(path()));
        QCOMPARE(readFile(path()), QByteArray());
    }

    void savingTwiceAppendsASecondCompleteReport()
    {
        const FakeTools tools;
        KInfoHelp info;
        info.writeSysInfoReport(path(), ReportSections());
        const QByteArray first = readFile(path());
        info.writeSysInfoReport(path(), ReportSections());
        QCOMPARE(readFile(path()), first + first);
    }

    void whatStoodInTheFileStays()
    {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("before");
        file.close();
        KInfoHelp().writeSysInfoReport(path(), {true, false, false, false, false, false, false});
        QCOMPARE(readFile(path()), "before" + kernelSection());
    }

    void aSecondReportUsesTheTextsOfTheFirst()
    {
        constexpr ReportSections envOnly{false, false, false, false, false, true, false};
        const FakeTools tools;
        KInfoHelp info;
        info.writeSysInfoReport(path(), envOnly);
        tools.add(QStringLiteral("env"), "echo CHANGED=1");
        info.writeSysInfoReport(path(), envOnly);
        QCOMPARE(readFile(path()), envSection + envSection);
        // The result of a probe run in between is used.
        info.getEnvInfo();
        info.writeSysInfoReport(path(), envOnly);
        QCOMPARE(readFile(path()), envSection + envSection + section("env", "CHANGED=1\r\n"));
    }

    void aProbeThatFailedIsRunAgain()
    {
        constexpr ReportSections fontOnly{false, false, false, true, false, false, false};
        const FakeTools tools;
        tools.add(QStringLiteral("fc-list"), "exit 1");
        KInfoHelp info;
        info.writeSysInfoReport(path(), fontOnly);
        tools.add(QStringLiteral("fc-list"), "echo font");
        info.writeSysInfoReport(path(), fontOnly);
        QCOMPARE(readFile(path()), section("font", QByteArray()) + section("font", "font\r\n"));
    }

    void anEmptyProcessorTextStillHasItsLineEnd()
    {
        const FakeTools tools;
        tools.add(QStringLiteral("cut"), "cat > /dev/null");
        KInfoHelp().writeSysInfoReport(path(), {false, false, true, false, false, false, false});
        QCOMPARE(readFile(path()), section("cpu", "\r\n"));
    }

    void aFailedStagingLeavesTheBrowserSectionEmpty()
    {
        qputenv("HELIO_SUITE_HOME", "/nonexistent");
        KInfoHelp().writeSysInfoReport(path(), {false, true, false, false, false, false, false});
        qunsetenv("HELIO_SUITE_HOME");
        QCOMPARE(readFile(path()), section("browser", QByteArray()));
    }

    void aPathThatCannotBeOpenedIsSkipped_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("directory") << m_directory.path();
        QTest::newRow("missing directory") << m_directory.filePath(QStringLiteral("no/report"));
        QTest::newRow("empty") << QString();
    }

    void aPathThatCannotBeOpenedIsSkipped()
    {
        QFETCH(QString, target);
        const FakePrograms tools;
        const QString note = testsupport::PrivateHome::current().path() + QStringLiteral("/asked");
        tools.add(QStringLiteral("env"), "touch \"$HOME/asked\"");
        KInfoHelp().writeSysInfoReport(target, ReportSections());
        QVERIFY(!QFileInfo::exists(note));
    }

    void aReportThatAFullDiskCutsShortIsNotWhole()
    {
        const ReportSections two{true, false, false, false, true, false, false};
        QVERIFY(!KInfoHelp().writeSysInfoReport(QStringLiteral("/dev/full"), two));
        QVERIFY(KInfoHelp().writeSysInfoReport(QStringLiteral("/dev/null"), two));
        QVERIFY(KInfoHelp().writeSysInfoReport(path(), two));
    }

    void onlyTheUserCanReadANewReport()
    {
        KInfoHelp().writeSysInfoReport(path(), noSection);
        QCOMPARE(modeOf(path()), mode_t(0600));
    }

    void anExistingFileKeepsItsMode()
    {
        QVERIFY(QFile(path()).open(QIODevice::WriteOnly));
        QCOMPARE(::chmod(QFile::encodeName(path()).constData(), 0644), 0);
        KInfoHelp().writeSysInfoReport(path(), noSection);
        QCOMPARE(modeOf(path()), mode_t(0644));
    }

    void aPipeIsNotWaitedFor()
    {
        QCOMPARE(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
        QVERIFY(KInfoHelp().writeSysInfoReport(path(), noSection));
        // Nor written to, even if somebody reads it.
        const int reader =
            ::open(QFile::encodeName(path()).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        QVERIFY(reader >= 0);
        QVERIFY(KInfoHelp().writeSysInfoReport(path(),
                                               {true, false, false, false, true, false, false}));
        char byte = 0;
        QCOMPARE(::read(reader, &byte, 1), ssize_t(0));
        ::close(reader);
    }

private:
    static mode_t modeOf(const QString &file)
    {
        struct stat status = {};
        ::stat(QFile::encodeName(file).constData(), &status);
        return status.st_mode & 07777;
    }

    QString path() const { return m_directory.filePath(QStringLiteral("report")); }

    QTemporaryDir m_directory;
};

HEADLESS_TEST_MAIN(SystemReportTest)
#include "tst_systemreport.moc"
