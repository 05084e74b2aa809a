#pragma once

#include <csignal>

#include "tests/helio/runtime/search/searchplace.h"
#include "tests/helio/runtime/search/searchrecorder.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/privatehome.h"

namespace testsupport {

/// A place to search with stand-ins for plocate and updatedb, and the files by which these tell
/// the test what they do and the test tells them to go on.
class SearchPrograms
{
public:
    /// Finds updatedb's --output, in the variable "output".
    static constexpr char findOutput[] = "while [ $# -gt 0 ]; do\n"
                                         "    if [ \"$1\" = --output ]; then output=$2; fi\n"
                                         "    shift\n"
                                         "done\n";

    /// The path of a file that is not among those searched.
    QByteArray outside(const char *name) const
    {
        return QFile::encodeName(place.outside(QString::fromUtf8(name)));
    }

    /// Waits until there is something in a file outside.
    bool waitForFile(const char *name) const
    {
        return QTest::qWaitFor(
            [&] { return QFileInfo(place.outside(QString::fromUtf8(name))).size() > 0; },
            longestWaitMs);
    }

    QByteArray contentOf(const char *name) const
    {
        return readFile(place.outside(QString::fromUtf8(name)));
    }

    void writeOutside(const char *name) const
    {
        QFile file(place.outside(QString::fromUtf8(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write("x") != 1)
            qFatal("cannot write %s", name);
    }

    /// Makes a database that is up to date as far as its age tells. From then on no refresh is
    /// expected, unless the test puts in an updatedb of its own.
    bool makeDatabase() const
    {
        programs.add(QStringLiteral("updatedb"),
                     findOutput + QByteArray("echo database > \"$output\""));
        SearchRecorder recorder;
        recorder.search.RunEverythingDaemon();
        const bool isThere = place.waitForDatabase();
        programs.add(QStringLiteral("updatedb"), unexpected());
        return isThere;
    }

    /// An updatedb that tells its process number and waits for a file of the name "go", or for the
    /// end of a test that failed.
    QByteArray waitingUpdater() const
    {
        return findOutput + ("echo $$ >> " + outside("updaters") + "\n" + waitForGo() +
                             "\necho database > \"$output\"");
    }

    QByteArray waitForGo() const
    {
        return "until [ -e " + outside("go") + " ] || [ ! -d " + QFile::encodeName(place.root()) +
               " ]; do sleep 0.01; done";
    }

    /// What a program does that nobody should start.
    QByteArray unexpected() const { return "echo unexpected >> " + outside("unexpected"); }

    bool hasUnexpectedCalls() const
    {
        return QFile::exists(place.outside(QStringLiteral("unexpected")));
    }

    static bool isRunning(const QByteArray &processId)
    {
        return ::kill(processId.trimmed().toInt(), 0) == 0;
    }

    SearchPlace place;
    FakePrograms programs;
};

} // namespace testsupport
