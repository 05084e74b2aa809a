#include <QStandardPaths>

#include <algorithm>

#include <sys/utsname.h>

#include "info/kinfohelp.h"
#include "info/runcommand.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/nomoredescriptors.h"
#include "tests/support/shell/headlesstest.h"

using namespace OfficeAssiant;
using testsupport::FakePrograms;

namespace {

/// The end-of-file value after the browsers' versions, as text.
const QString strayCharacter = QString(QChar(QChar::ReplacementCharacter));

} // namespace

/// The probes of the machine, with the real tools and with fakes.
class ProbesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("LC_ALL", "C.UTF-8"); }

    void theKernelLineHasTwoBlanksBeforeTheHardwareName()
    {
        utsname names{};
        QCOMPARE(::uname(&names), 0);
        QCOMPARE(KInfoHelp().getKernelInfo(),
                 QString::fromLatin1(names.sysname) + QLatin1Char(' ') +
                     QString::fromLatin1(names.release) + QStringLiteral("  ") +
                     QString::fromLatin1(names.machine));
    }

    void browsersAreListedInTheirOrder()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("qaxbrowser-safe"), "echo Qax 3");
        programs.add(QStringLiteral("browser360-cn"), "echo Browser 360 2");
        programs.add(QStringLiteral("uos-browser"), "printf 'Uos\\t  \\n 1\\n'");
        programs.add(QStringLiteral("chromium-browser"), "echo Chromium 87.0");
        programs.add(QStringLiteral("google-chrome"), "echo Google Chrome 119 '*'");
        programs.add(QStringLiteral("firefox"), "echo Mozilla Firefox 102.15.0esr");
        QCOMPARE(
            KInfoHelp().getBrowserInfo(),
            QStringList({QStringLiteral("Mozilla Firefox 102.15.0esr"),
                         QStringLiteral("Google Chrome 119 *"), QStringLiteral("Chromium 87.0"),
                         QStringLiteral("Uos 1"), QStringLiteral("Browser 360 2"),
                         QStringLiteral("Qax 3"), strayCharacter}));
    }

    void browsersWithoutAProgramAreFoundAsPackages()
    {
        const FakePrograms programs;
        for (const char *tool : {"bash", "awk", "grep", "which", "sh"})
            linkReal(programs, QLatin1String(tool));
        programs.add(QStringLiteral("dpkg"),
                     "test \"$1\" = -l || exit 9\n"
                     "printf 'ii  browser360  13.2  amd64  a browser\\n'\n"
                     "printf 'rc  old360  1.0  amd64  removed\\n'\n"
                     "printf 'ii  qianxin-browser  4.0  amd64  another\\n'");
        programs.hideOthers();
        QCOMPARE(KInfoHelp().getBrowserInfo(),
                 QStringList({QStringLiteral("browser360 13.2"),
                              QStringLiteral("qianxin-browser 4.0"), strayCharacter}));
    }

    void theLastBrowserLineEndsWithTheStrayCharacter()
    {
        const FakePrograms programs;
        for (const char *tool : {"bash", "sh"})
            linkReal(programs, QLatin1String(tool));
        programs.add(QStringLiteral("which"), "test \"$1\" = firefox");
        programs.add(QStringLiteral("firefox"), "printf 'Firefox 102'");
        programs.add(QStringLiteral("dpkg"), "exit 1");
        programs.add(QStringLiteral("grep"), "exit 1");
        programs.add(QStringLiteral("awk"), "exit 0");
        programs.hideOthers();
        const QStringList lines = KInfoHelp().getBrowserInfo();
        QCOMPARE(lines, QStringList({QStringLiteral("Firefox 102"), strayCharacter}));
        QVERIFY(lines.last().endsWith(strayCharacter));
    }

    void theRealBrowserScriptEndsWithTheStrayCharacter()
    {
        const QStringList lines = KInfoHelp().getBrowserInfo();
        QVERIFY(!lines.isEmpty());
        QCOMPARE(lines.last().right(1), strayCharacter);
    }

    void aFailedStagingGivesOneEmptyBrowser()
    {
        qputenv("HELIO_SUITE_HOME", "/nonexistent");
        QCOMPARE(KInfoHelp().getBrowserInfo(), QStringList{QString()});
        qunsetenv("HELIO_SUITE_HOME");
    }

    void aFailedStartGivesNoBrowsers()
    {
        KInfoHelp info;
        info.getBrowserInfo();
        const testsupport::NoMoreDescriptors limit;
        QCOMPARE(info.getBrowserInfo(), QStringList());
    }

    void processorLinesAreThoseOfTheRealFile()
    {
        QStringList expected;
        const QList<QByteArray> lines =
            testsupport::readFile(QStringLiteral("/proc/cpuinfo")).split('\n');
        for (const QByteArray &line : lines) {
            if (line.contains("name"))
                expected.append(QString::fromUtf8(line).section(QLatin1Char(':'), 1, 1));
        }
        QVERIFY(!expected.isEmpty());
        QCOMPARE(KInfoHelp().getCpuInfo(), expected);
        QVERIFY(expected.first().startsWith(QLatin1Char(' ')));
    }

    void processorsAreReadThroughThreeTools()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("cat"),
                     "test \"$*\" = /proc/cpuinfo || exit 9\n"
                     "printf 'model name\\t: Fast CPU: 2\\nflags\\t: fpu\\nname: other\\n\\n'");
        QCOMPARE(KInfoHelp().getCpuInfo(),
                 QStringList({QStringLiteral(" Fast CPU"), QStringLiteral(" other")}));
    }

    void twoTrailingLineFeedsGiveALastEmptyProcessor()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("cut"), "printf ' one\\n two\\n\\n'");
        QCOMPARE(KInfoHelp().getCpuInfo(),
                 QStringList({QStringLiteral(" one"), QStringLiteral(" two"), QString()}));
    }

    void fontsAreSortedByCharacterCode()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("fc-list"),
                     "test \"$#\" = 2 && test \"$1\" = -f || exit 9\n"
                     "test \"$2\" = '%-40{family[0]}%{style} \n' || exit 9\n"
                     "printf 'b Regular \\na Bold \\nZ Regular \\n'");
        QCOMPARE(KInfoHelp().getFontInfo(),
                 QStringList({QStringLiteral("Z Regular "), QStringLiteral("a Bold "),
                              QStringLiteral("b Regular ")}));
    }

    void aRealFontLineHasTheFamilyInFortyColumns()
    {
        if (runCommand(QStringLiteral("fc-list")).isEmpty())
            QSKIP("no font is installed");
        const QStringList lines = KInfoHelp().getFontInfo();
        QVERIFY(std::all_of(lines.begin(), lines.end(), [](const QString &line) {
            return line.size() > 40 && line.endsWith(QLatin1Char(' '));
        }));
        QCOMPARE(lines.size(), runCommand(QStringLiteral("fc-list")).count(QLatin1Char('\n')) + 1);
    }

    void withoutTheFontToolThereIsOneEmptyLine()
    {
        const FakePrograms programs;
        linkReal(programs, QStringLiteral("sh"));
        programs.hideOthers();
        QCOMPARE(KInfoHelp().getFontInfo(), QStringList{QString()});
    }

    void theEnvironmentIsThatOfThisProcess()
    {
        qputenv("ASSISTANT_PROBE", "a=b c");
        const QStringList lines = KInfoHelp().getEnvInfo();
        qunsetenv("ASSISTANT_PROBE");
        QVERIFY(lines.contains(QStringLiteral("ASSISTANT_PROBE=a=b c")));
        QVERIFY(
            lines.contains(QStringLiteral("HOME=") + testsupport::PrivateHome::current().path()));
    }

    void environmentLinesAreKeptAsPrinted()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("env"), "printf 'B=1\\n\\nA=two\\nlines\\n'");
        QCOMPARE(KInfoHelp().getEnvInfo(),
                 QStringList({QStringLiteral("B=1"), QString(), QStringLiteral("A=two"),
                              QStringLiteral("lines")}));
    }

    void theOftenUsedPathsStartWithTheSuitesSettings()
    {
        const QString home = testsupport::PrivateHome::current().path();
        const KInfoHelp info;
        QCOMPARE(info.oftenFiles().size(), 3);
        QCOMPARE(info.oftenFiles().at(0).name, QStringLiteral("Office.conf"));
        QCOMPARE(info.oftenFiles().at(0).path,
                 home + QStringLiteral("/.config/Orvane/Office.conf"));
        QCOMPARE(info.oftenFiles().at(1).name, QStringLiteral(".config"));
        QCOMPARE(info.oftenFiles().at(1).path, home + QStringLiteral("/.config"));
        QCOMPARE(info.oftenFiles().at(2).name, QStringLiteral("Orvane"));
        QCOMPARE(info.oftenFiles().at(2).path, home + QStringLiteral("/.config/Orvane"));
    }

private:
    /// Adds the real program @p name to the fakes, so that it stays visible when others are hidden.
    static void linkReal(const FakePrograms &programs, const QString &name)
    {
        const QString real = QStandardPaths::findExecutable(name);
        QVERIFY2(!real.isEmpty(), qPrintable(name));
        programs.add(name, "exec '" + QFile::encodeName(real) + "' \"$@\"");
    }
};

HEADLESS_TEST_MAIN(ProbesTest)
#include "tst_probes.moc"
