#include <QJsonArray>
#include <QStandardPaths>

#include "helio/opening/associations.h"
#include "helio/processes/programlooks.h"
#include "helio/tasks/running/taskprogram.h"
#include "helio/tasks/tasks.h"
#include "texts/texts.h"

namespace helio {

namespace {

constexpr char desktopTool[] = "gio";

QString samplesOf(const TaskRun &run)
{
    return run.programs + QStringLiteral("/asso_template");
}

bool hasTool()
{
    return !QStandardPaths::findExecutable(QLatin1String(desktopTool)).isEmpty();
}

/// Its programs' answers are read, so they are not translated.
AskDesktop askingFor(const TaskRun &run)
{
    return [run](const QString &name, const QStringList &arguments) -> DesktopAnswer {
        const QString path = QStandardPaths::findExecutable(name);
        if (path.isEmpty())
            return {false, texts::tr("%1 is not installed").arg(name), {}};
        TaskProgram program{path, arguments};
        program.environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        const ProgramResult result = runProgram(program, run.isCancelled);
        return {result.isCancelled, result.fault, result.output};
    };
}

QJsonObject rowObject(const Association &row, const OpeningSuite &suite)
{
    return {{QStringLiteral("suffix"), row.kind.suffix},
            {QStringLiteral("program"), row.kind.entry},
            {QStringLiteral("type"), row.type},
            {QStringLiteral("entry"), row.entry},
            {QStringLiteral("isKnown"), suite.knows(row.type)},
            {QStringLiteral("isSuite"), suite.opensWith(row.kind, row.entry)}};
}

TaskEnd answered(const TaskRun &run, const AssociationReading &reading, const OpeningSuite &suite)
{
    if (reading.isCancelled)
        return TaskEnd::cancelled();
    if (!reading.fault.isEmpty())
        return TaskEnd::failed(reading.fault);
    QJsonArray rows;
    QStringList entries;
    for (const Association &row : reading.rows) {
        rows.append(rowObject(row, suite));
        entries.append(row.entry);
    }
    const QString language = run.text("language").replace(QLatin1Char('-'), QLatin1Char('_'));
    TaskEnd end;
    end.answer = {
        {QStringLiteral("suite"), suite.id},
        {QStringLiteral("name"), suite.name},
        {QStringLiteral("rows"), rows},
        {QStringLiteral("programs"), entryLooks(entries, language, doctor::thisMachine())}};
    return end;
}

} // namespace

TaskEnd tasks::readOpenings(const TaskRun &run)
{
    AssociationReading reading;
    if (hasTool()) {
        reading = readAssociations(samplesOf(run), askingFor(run));
    } else {
        for (const DocumentKind &kind : documentKinds())
            reading.rows.append({kind, {}, {}});
    }
    return answered(run, reading, openingSuite(doctor::thisMachine()));
}

TaskEnd tasks::repairOpenings(const TaskRun &run)
{
    const doctor::Machine machine = doctor::thisMachine();
    const QStringList suffixes =
        run.arguments.value(QStringLiteral("suffixes")).toVariant().toStringList();
    const AssociationReading after = repairAssociations(openingSuite(machine), samplesOf(run),
                                                        suffixes, machine, askingFor(run));
    return answered(run, after, openingSuite(machine));
}

} // namespace helio
