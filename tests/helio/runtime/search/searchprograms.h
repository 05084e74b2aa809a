#pragma once

#include <csignal>

#include "tests/helio/runtime/search/searchplace.h"
#include "tests/helio/runtime/search/searchrecorder.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/privatehome.h"

namespace testsupport {

/// A place to search with fake plocate and updatedb. They and the test signal each other by files
/// outside the searched directory.
class SearchPrograms
{
public:
    /// Sets the variable "output" to updatedb's --output.
    static constexpr char findOutput[] = "while [ $# -gt 0 ]; do\n"
                                         "    if [ \"$1\" = --output ]; then output=$2; fi\n"
                                         "    shift\n"
                                         "done\n";

    /// The path of a file outside the searched directory.
    QByteArray outside(const char *name) const
    {
        return QFile::encodeName(place.outside(QString::fromUtf8(name)));
    }

    /// Waits until a file outside has content.
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

    /// Makes a database that is recent enough. After that no refresh is expected, unless the test
    /// adds another updatedb.
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

    /// An updatedb that writes its process number to "updaters" and waits for the file "go", or for
    /// the end of a failed test.
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

    /// The script of a program that must not be started.
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
