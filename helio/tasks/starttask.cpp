#include "doctor/machine/machine.h"
#include "helio/suite/starttime.h"
#include "helio/suite/statejson.h"
#include "helio/tasks/tasks.h"
#include "texts/texts.h"

namespace helio {

TaskEnd tasks::measureStart(const TaskRun &run)
{
    const std::optional<suites::State> state = stateOfChosen(doctor::thisMachine());
    if (!state)
        return TaskEnd::failed(texts::tr("No office suite is installed."));
    const StartTimes times =
        measuredStart(*state, [&run](int /*done*/, int /*all*/) { return !run.isCancelled(); });
    if (times.isCancelled)
        return TaskEnd::cancelled();
    if (!times.problem.isEmpty())
        return TaskEnd::failed(times.problem);
    TaskEnd end;
    end.answer = startTimesObject(times);
    return end;
}

} // namespace helio
