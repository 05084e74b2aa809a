#include <QHash>

#include <algorithm>

#include <unistd.h>

#include "doctor/machine/machine.h"
#include "helio/processes/processend.h"
#include "helio/processes/processlist.h"
#include "helio/processes/programlooks.h"
#include "helio/tasks/tasks.h"
#include "texts/texts.h"

namespace helio {

namespace {

QString userName(uid_t user, const doctor::Machine &machine)
{
    const QString name = doctor::accountOf(machine, user).name;
    return name.isEmpty() ? QString::number(user) : name;
}

QJsonArray listed(const QVector<ListedProcess> &processes, const doctor::Machine &machine)
{
    // The window and its helpers are not what a user looks for.
    const QVector<qint64> own = familyOf(getpid(), processes);
    QHash<uid_t, QString> users;
    QJsonArray list;
    for (const ListedProcess &process : processes) {
        if (own.contains(process.id))
            continue;
        if (!users.contains(process.user))
            users.insert(process.user, userName(process.user, machine));
        list.append(QJsonObject{{QStringLiteral("id"), process.id},
                                {QStringLiteral("start"), QString::number(process.start)},
                                {QStringLiteral("user"), users.value(process.user)},
                                {QStringLiteral("isOwn"), process.user == machine.user},
                                {QStringLiteral("program"), process.program},
                                {QStringLiteral("command"), process.command},
                                {QStringLiteral("memory"), process.memory},
                                {QStringLiteral("processorTime"), process.processorTime}});
    }
    return list;
}

} // namespace

TaskEnd tasks::listProcesses(const TaskRun & /*run*/)
{
    const doctor::Machine machine = doctor::thisMachine();
    TaskEnd end;
    end.answer = machineLoad(machine);
    end.answer.insert(QStringLiteral("processes"), listed(readProcesses(machine), machine));
    return end;
}

TaskEnd tasks::describePrograms(const TaskRun &run)
{
    const QStringList programs =
        run.arguments.value(QStringLiteral("programs")).toVariant().toStringList();
    const QString language = run.text("language").replace(QLatin1Char('-'), QLatin1Char('_'));
    TaskEnd end;
    end.answer.insert(QStringLiteral("programs"),
                      programLooks(programs, language, doctor::thisMachine()));
    return end;
}

TaskEnd tasks::endOneProcess(const TaskRun &run)
{
    const auto id = static_cast<qint64>(run.arguments.value(QStringLiteral("id")).toDouble());
    const ProcessEnd ended =
        endProcess(id, run.text("start").toULongLong(),
                   run.arguments.value(QStringLiteral("force")).toBool(), run.isCancelled);
    switch (ended.kind) {
    case ProcessEnd::Kind::Refused:
        return TaskEnd::failed(ended.reason);
    case ProcessEnd::Kind::Cancelled:
        return TaskEnd::cancelled();
    case ProcessEnd::Kind::Ended:
    case ProcessEnd::Kind::Remains:
        break;
    }
    TaskEnd end;
    end.answer.insert(QStringLiteral("ended"), ended.kind == ProcessEnd::Kind::Ended);
    return end;
}

} // namespace helio
