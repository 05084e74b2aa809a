#include <QDir>

#include "doctor/machine/machine.h"
#include "helio/doctor/commands/commandrepair.h"
#include "helio/opening/openingsuite.h"
#include "helio/processes/programlooks.h"
#include "helio/tasks/tasks.h"
#include "host/krt.h"

namespace helio {

namespace {

constexpr char shortcutFiles[] = "vyr-office*desktop";

/// The suite's shortcuts, as they are on the desktop or would be put there.
QMap<QString, QString> shortcutsIn(const QDir &desktop, const doctor::Machine &machine)
{
    const QDir shipped(machine.variable(QStringLiteral("SUITE_ROOT")).value_or(QString()) +
                       QStringLiteral("/desktops"));
    QMap<QString, QString> paths;
    for (const QDir &folder : {shipped, desktop}) {
        const QStringList names = folder.entryList({QLatin1String(shortcutFiles)}, QDir::Files);
        for (const QString &name : names)
            paths.insert(name, folder.filePath(name));
    }
    return paths;
}

} // namespace

TaskEnd tasks::listShortcuts(const TaskRun &run)
{
    const doctor::Machine machine = doctor::thisMachine();
    // The command makes the folder of the desktop where it is missing.
    const QDir folder(desktopFolder(machine));
    const QStringList files =
        folder.entryList({QLatin1String(shortcutFiles)}, QDir::Files | QDir::System);
    const QString language = run.text("language").replace(QLatin1Char('-'), QLatin1Char('_'));
    const QJsonObject state{
        {QStringLiteral("icon"), files.join(QLatin1Char('|'))},
        {QStringLiteral("mode"), componentMode(machine)},
        {QStringLiteral("looks"), fileLooks(shortcutsIn(folder, machine), language, machine)},
        {QStringLiteral("chartboard"), krt::kcmc::support(QStringLiteral("ChartBoard"))},
        {QStringLiteral("docket"), krt::kcmc::support(QStringLiteral("DocketComponent"))},
        {QStringLiteral("fixedcomponent"), krt::kcmc::support(QStringLiteral("FixedComponent"))}};
    TaskEnd end;
    end.answer.insert(QStringLiteral("envelope"), QJsonObject{{QStringLiteral("result"), state}});
    return end;
}

} // namespace helio
