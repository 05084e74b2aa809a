#include <QJsonArray>
#include <QTemporaryDir>
#include <QUrl>

#include <csignal>
#include <memory>

#include <sys/resource.h>

#include "info/kinfohelp.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using testsupport::FakePrograms;
using testsupport::PrivateHome;
using testsupport::readFile;
using testsupport::RecordingShell;

namespace {

const QJsonObject success{{QStringLiteral("result"), QStringLiteral("success")}};
const QJsonObject error{{QStringLiteral("result"), QStringLiteral("error")}};

} // namespace

/// The commands that write a report or a listing to a file of the user's choice.
class InfoExportsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(m_directory->isValid());
        // Two of the three often-used paths exist.
        PrivateHome::current().writeFile(QStringLiteral(".config/Orvane/other.conf"), "x");
    }

    void theReportIsSavedOpenedAndASuccess()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("exportsysinfo"), {}, {path("report")}), success);
        QVERIFY(readFile(path("report")).startsWith("************kernel-begin***********\r\n"));
        QVERIFY(readFile(path("report")).endsWith("************otheroffice-end***********\r\n"));
        QCOMPARE(openedFiles(shell), QStringList{path("report")});
        const QJsonObject dialog = shell.events().first();
        QCOMPARE(dialog.value(QLatin1String("mode")).toString(), QStringLiteral("save"));
        QCOMPARE(dialog.value(QLatin1String("caption")).toString(), QStringLiteral("Save File"));
        QCOMPARE(dialog.value(QLatin1String("name")).toString(), QStringLiteral("systeminfo"));
        QCOMPARE(dialog.value(QLatin1String("filters")), QJsonValue(QJsonArray()));
    }

    void aCancelledReportIsAnError()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("exportsysinfo")), error);
        QVERIFY(openedFiles(shell).isEmpty());
    }

    void aReportThatMustNotBeOpenedIsWrittenAndSetsNoResult()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("exportsysinfo"), {}, {path("report.sh")}),
                 QJsonObject());
        QVERIFY(!readFile(path("report.sh")).isEmpty());
        QVERIFY(openedFiles(shell).isEmpty());
    }

    void aReportThatCannotBeWrittenIsStillOpened()
    {
        RecordingShell shell;
        const QString missing = path("missing/report");
        QCOMPARE(shell.call(QStringLiteral("exportsysinfo"), {}, {missing}), success);
        QCOMPARE(openedFiles(shell), QStringList{missing});
        QVERIFY(!QFileInfo::exists(missing));
    }

    void aReportThatIsCutShortIsToldBesideTheSameResult()
    {
        const rlimit small{64, RLIM_INFINITY};
        const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        RecordingShell shell;
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
        const QJsonObject answer =
            shell.call(QStringLiteral("exportsysinfo"), {}, {path("report")});
        const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &none), 0);
        std::signal(SIGXFSZ, previousHandler);
        QCOMPARE(answer, (QJsonObject{{QStringLiteral("result"), QStringLiteral("success")},
                                      {QStringLiteral("incomplete"), true}}));
        QCOMPARE(readFile(path("report")).size(), 64);
        QCOMPARE(openedFiles(shell), QStringList{path("report")});
    }

    void theListingCommandIsTheWordsWithSingleBlanks()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("bash"),
                     "printf '%s\\n' \"$#\" \"$@\" > \"$HOME/part\"; mv \"$HOME/part\" "
                     "\"$HOME/words\"");
        const QString home = PrivateHome::current().path();
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("exportoftenfileperm"), {}, {path("p")}), success);
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(home + QStringLiteral("/words")),
                                 testsupport::longestWaitMs);
        const QStringList words{QStringLiteral("5"),
                                PrivateHome::current().suiteHome() +
                                    QStringLiteral("/tmp/officeassis_script/getfileinfo.sh"),
                                path("p"),
                                home + QStringLiteral("/.config/Orvane/Office.conf"),
                                home + QStringLiteral("/.config"),
                                home + QStringLiteral("/.config/Orvane")};
        QCOMPARE(QString::fromUtf8(readFile(home + QStringLiteral("/words"))),
                 words.join(QLatin1Char('\n')) + QLatin1Char('\n'));
    }

    void theListingHasALineForEachPathThatExists()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("exportoftenfileperm"), {}, {path("listing")}), success);
        QTRY_COMPARE_WITH_TIMEOUT(listedPaths("listing").size(), 2, testsupport::longestWaitMs);
        const QString home = PrivateHome::current().path();
        QCOMPARE(listedPaths("listing"), QStringList({home + QStringLiteral("/.config"),
                                                      home + QStringLiteral("/.config/Orvane")}));
        QCOMPARE(openedFiles(shell), QStringList{path("listing")});
        const QJsonObject dialog = shell.events().first();
        QCOMPARE(dialog.value(QLatin1String("caption")).toString(), QStringLiteral("Save File"));
        QCOMPARE(dialog.value(QLatin1String("name")).toString(), QStringLiteral("filepermissions"));
    }

    void listingTwiceIntoTheSameFileLeavesTwoListings()
    {
        RecordingShell shell;
        shell.call(QStringLiteral("exportoftenfileperm"), {}, {path("listing")});
        QTRY_COMPARE_WITH_TIMEOUT(listedPaths("listing").size(), 2, testsupport::longestWaitMs);
        shell.call(QStringLiteral("exportoftenfileperm"), {}, {path("listing")});
        QTRY_COMPARE_WITH_TIMEOUT(listedPaths("listing").size(), 4, testsupport::longestWaitMs);
    }

    void aBlankInTheOutputNameSplitsIt()
    {
        PrivateHome::current().writeFile(QStringLiteral("listed"), "x");
        const QString listed = PrivateHome::current().path() + QStringLiteral("/listed");
        RecordingShell shell;
        // The first word is the output file, the second one a listed path.
        QCOMPARE(
            shell.call(QStringLiteral("exportspecialfileperm"), {}, {listed, path("first second")}),
            success);
        QTRY_COMPARE_WITH_TIMEOUT(listedPaths("first"), QStringList{listed},
                                  testsupport::longestWaitMs);
        QVERIFY(!QFileInfo::exists(path("first second")));
    }

    void aPickedFileIsListed()
    {
        const QString picked = PrivateHome::current().writeFile(QStringLiteral("picked"), "x");
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("exportspecialfileperm"), {}, {picked, path("one")}),
                 success);
        QTRY_COMPARE_WITH_TIMEOUT(listedPaths("one"), QStringList{picked},
                                  testsupport::longestWaitMs);
        QCOMPARE(openedFiles(shell), QStringList{path("one")});
    }

    void aPickedFileWithoutAnOutputIsASuccessAndWritesNothing()
    {
        const QString picked = PrivateHome::current().writeFile(QStringLiteral("picked"), "x");
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("exportspecialfileperm"), {}, {picked}), success);
        QCOMPARE(shell.events(QStringLiteral("dialog")).size(), 2);
        QVERIFY(openedFiles(shell).isEmpty());
    }

    void startedListingsAreWaitedForBeforeTheirScriptGoes()
    {
        OfficeAssiant::KInfoHelp help;
        const QString output = path("listing");
        QVERIFY(help.exportSpecialFilePermissions(output, QStringLiteral("/etc/passwd")));
        help.waitForListings(testsupport::longestWaitMs);
        QVERIFY(readFile(output).endsWith(" /etc/passwd\n"));
    }

    void withoutAPickedFileItIsAnErrorAndNothingMoreIsAsked()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("exportspecialfileperm")), error);
        QCOMPARE(shell.events(QStringLiteral("dialog")).size(), 1);
    }

    void aCancelledListingIsStillASuccess()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("exportoftenfileperm")), success);
        QVERIFY(openedFiles(shell).isEmpty());
    }

    void aListingWithoutItsScriptIsStillASuccessAndOpensNothing()
    {
        qputenv("HELIO_SUITE_HOME", "/nonexistent");
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("exportoftenfileperm"), {}, {path("p")}), success);
        qunsetenv("HELIO_SUITE_HOME");
        QVERIFY(openedFiles(shell).isEmpty());
        QVERIFY(!QFileInfo::exists(path("p")));
    }

    void tenMegabytesOfFontsReachThePage()
    {
        const FakePrograms programs;
        programs.add(
            QStringLiteral("fc-list"),
            "yes 'a family name that is about as long as they come, Regular' | head -c 10000000");
        RecordingShell shell;
        const QJsonObject answer = shell.call(QStringLiteral("stratcheckenv"));
        const QString fonts = answer.value(QLatin1String("result"))
                                  .toObject()
                                  .value(QLatin1String("fontinfo"))
                                  .toString();
        QCOMPARE(fonts.size(), 10000000);
    }

private:
    QString path(const char *name) const { return m_directory->filePath(QLatin1String(name)); }

    static QStringList openedFiles(const RecordingShell &shell)
    {
        QStringList files;
        const QList<QJsonObject> events = shell.events(QStringLiteral("opened"));
        for (const QJsonObject &event : events)
            files.append(QUrl(event.value(QLatin1String("url")).toString()).toLocalFile());
        return files;
    }

    /// The last word of each line of the listing @p name; nothing until the file exists.
    QStringList listedPaths(const char *name) const
    {
        QStringList paths;
        if (!QFileInfo::exists(path(name)))
            return paths;
        const QList<QByteArray> lines = readFile(path(name)).split('\n');
        for (const QByteArray &line : lines) {
            if (!line.isEmpty())
                paths.append(QString::fromUtf8(line).section(QLatin1Char(' '), -1));
        }
        return paths;
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

HEADLESS_TEST_MAIN(InfoExportsTest)
#include "tst_infoexports.moc"
