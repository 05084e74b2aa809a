#include "helio/tasks/running/placing.h"
#include "helio/tasks/tasks.h"

namespace helio {

TaskEnd tasks::saveText(const TaskRun &run)
{
    const QString problem = written(run.text("text").toUtf8(), run.file);
    if (!problem.isEmpty())
        return TaskEnd::failed(problem);
    TaskEnd end;
    end.file = run.file;
    return end;
}

} // namespace helio
