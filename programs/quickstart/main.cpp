#include <QCoreApplication>
#include <QDir>
#include <QLockFile>
#include <QStandardPaths>

#include <cstdio>

#include "programs/component/suiteprograms.h"
#include "programs/notice/desktopnotice.h"
#include "programs/notice/sessionbus.h"
#include "programs/quickstart/runningoffice.h"
#include "texts/texts.h"

using namespace programs;

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;
constexpr std::chrono::seconds patience(60);
constexpr std::chrono::seconds patienceForOther = 2 * patience;

/// What came of it, for the user.
struct Outcome
{
    bool isDone = false;
    QString text;
};

Outcome start(const suites::Installation &office)
{
    if (isRunning(office))
        return {true, texts::tr("%1 is running already; documents open without its start.")};
    if (startHidden(office, doctor::Deadline(patience)))
        return {true, texts::tr("%1 is started and waits for documents.")};
    return {false, texts::tr("%1 could not be started. Start it by hand to see why.")};
}

Outcome stop(const suites::Installation &office)
{
    if (!isRunning(office))
        return {true, texts::tr("%1 is not running.")};
    switch (askToEnd(office, doctor::Deadline(patience))) {
    case EndAnswer::Ends:
        return {true, texts::tr("%1 has ended.")};
    case EndAnswer::HasDocuments:
        return {false, texts::tr("%1 has open documents, so it goes on running. It ends when you "
                                 "close the last of them.")};
    case EndAnswer::Silent:
        break;
    }
    return {false, texts::tr("%1 did not answer, so it goes on running. Save your documents and "
                             "close its windows.")};
}

Outcome status(const suites::Installation &office)
{
    return isRunning(office) ? Outcome{true, texts::tr("%1 is running.")}
                             : Outcome{false, texts::tr("%1 is not running.")};
}

Outcome restart(const suites::Installation &office)
{
    const Outcome stopped = stop(office);
    return stopped.isDone ? start(office) : stopped;
}

using Action = Outcome (*)(const suites::Installation &);

Action actionNamed(const QString &name)
{
    static const QHash<QString, Action> actions = {{QStringLiteral("start"), start},
                                                   {QStringLiteral("stop"), stop},
                                                   {QStringLiteral("restart"), restart},
                                                   {QStringLiteral("status"), status}};
    return actions.value(name);
}

int tell(const Outcome &outcome, bool quietly)
{
    std::fprintf(outcome.isDone ? stdout : stderr, "%s\n", outcome.text.toUtf8().constData());
    if (!quietly && hasSessionBus())
        showNotice(QDBusConnection::sessionBus(), texts::tr("Preloading"), outcome.text);
    return outcome.isDone ? 0 : failed;
}

} // namespace

/// "quickstartoffice start|stop|restart|status [true|false]": keeps LibreOffice started in the
/// session, where the suite is not installed. The suite's program has a second argument, which has
/// no meaning here.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments().mid(1);
    const Action action = words.isEmpty() ? nullptr : actionNamed(words.first());
    const QStringList seconds = {QStringLiteral("true"), QStringLiteral("false")};
    if (!action || words.size() > 2 || (words.size() == 2 && !seconds.contains(words.at(1)))) {
        std::fprintf(stderr, "usage: quickstartoffice start|stop|restart|status [true|false]\n");
        return wrongUsage;
    }
    texts::useLanguageOfUser();
    const bool isQuestion = action == status;
    const std::optional<suites::Installation> office = suiteInstead();
    if (!office)
        return tell({false, texts::tr("No office suite is installed. Install LibreOffice.")},
                    isQuestion);
    // One after the other: two starts at once would each see no LibreOffice.
    QLockFile lock(QDir(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation))
                       .filePath(QStringLiteral("office-assistant-quickstart.lock")));
    lock.setStaleLockTime(0);
    if (!isQuestion && !lock.tryLock(int(std::chrono::milliseconds(patienceForOther).count())))
        return tell({false, texts::tr("Preloading is being changed by another program.")}, false);
    Outcome outcome = action(*office);
    outcome.text = outcome.text.arg(office->name);
    return tell(outcome, isQuestion);
}
