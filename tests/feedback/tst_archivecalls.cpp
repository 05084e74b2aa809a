#include <QDir>
#include <QFile>
#include <QJsonArray>

#include <memory>

#include <dirent.h>

#include "dump/dumpfiles.h"
#include "feedback/feedbackarchive.h"
#include "plugin/config/suitefiles.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"
#include "tests/support/shell/stagedscripts.h"

using testsupport::PrivateHome;
using testsupport::RecordingShell;
using testsupport::StagedScripts;

namespace {

/// The files of a directory in the order of readdir(3).
QStringList listing(const QString &directory)
{
    QStringList names;
    const std::unique_ptr<DIR, int (*)(DIR *)> stream(
        ::opendir(QFile::encodeName(directory).constData()), ::closedir);
    while (const dirent *entry = ::readdir(stream.get())) {
        if (entry->d_name[0] != '.')
            names.append(QFile::decodeName(entry->d_name));
    }
    return names;
}

} // namespace

/// What the start of an archive finds around it.
class ArchiveCallsTest : public QObject
{
    Q_OBJECT

private slots:
    static void dumpsStandInTheOrderOfTheListing()
    {
        const QString directory = OfficeAssiant::dumpDirectory();
        for (int number = 0; number < 60; ++number) {
            PrivateHome::current().writeFile(
                QStringLiteral(".local/share/Orvane/tmp/dump/vyr_%1.dmp").arg(number * 7919 % 61),
                "dump");
        }
        const QStringList names = listing(directory);
        QStringList sorted = names;
        sorted.sort();
        QVERIFY2(sorted != names, "this file system lists in the order of the names");
        OfficeAssiant::FeedbackRequest request;
        request.withDumps = true;
        const QString prefix = QLatin1Char(';') + directory + QLatin1Char('/');
        QCOMPARE(OfficeAssiant::archiveArguments(request, false).at(7),
                 prefix + names.join(prefix));
    }

    static void twoQuickCallsAreBothStartedEachForItsOwn()
    {
        const StagedScripts scripts;
        // The first is still at work when the second starts.
        scripts.replace(QStringLiteral("archivepackage.sh"),
                        "echo \"$1 $2\" >> \"$HOME/started\"\n"
                        "while [ \"$(wc -l < \"$HOME/started\")\" -lt 2 ]; do sleep 0.02; done\n"
                        "echo \"$2\" > \"$1.done\"");
        RecordingShell shell;
        const QString home = PrivateHome::current().path();
        for (const char *name : {"first", "second"}) {
            const QString target = home + QLatin1Char('/') + QLatin1String(name);
            QCOMPARE(shell
                         .call(QStringLiteral("archivepackage"),
                               {{QStringLiteral("archiveType"), QLatin1String(name)}}, {target})
                         .value(QLatin1String("result"))
                         .toString(),
                     QString::fromLatin1(target.toUtf8().toBase64()));
        }
        for (const char *name : {"first", "second"}) {
            const QString done =
                home + QLatin1Char('/') + QLatin1String(name) + QStringLiteral(".done");
            const QByteArray content = QByteArray(name) + '\n';
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(done), testsupport::longestWaitMs);
            QTRY_COMPARE_WITH_TIMEOUT(testsupport::readFile(done), content,
                                      testsupport::longestWaitMs);
        }
    }

    static void theWorkDirectoryIsMadeOneLevelOnly()
    {
        const QString suiteHome = PrivateHome::current().suiteHome();
        QVERIFY(QDir(suiteHome).removeRecursively());
        QVERIFY(!OfficeAssiant::makeSuiteTemporaryDirectory());
        RecordingShell shell;
        shell.call(QStringLiteral("archivepackage"),
                   {{QStringLiteral("archiveSysInfo"), QStringLiteral("1")}},
                   {PrivateHome::current().path() + QStringLiteral("/third")});
        const QJsonArray arguments = shell.events(QStringLiteral("started"))
                                         .value(0)
                                         .value(QLatin1String("arguments"))
                                         .toArray();
        QCOMPARE(arguments.at(4).toString(), QStringLiteral("false"));
        QVERIFY(!QFile::exists(suiteHome));
        QVERIFY(QDir().mkdir(suiteHome));
        QVERIFY(OfficeAssiant::makeSuiteTemporaryDirectory());
        QVERIFY(QFile::exists(suiteHome + QStringLiteral("/tmp")));
    }
};

HEADLESS_TEST_MAIN(ArchiveCallsTest)
#include "tst_archivecalls.moc"
