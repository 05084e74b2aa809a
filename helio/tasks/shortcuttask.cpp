#include <QDir>

#include "doctor/machine/machine.h"
#include "helio/doctor/commandrepair.h"
#include "helio/opening/openingsuite.h"
#include "helio/tasks/tasks.h"
#include "host/krt.h"

namespace helio {

TaskEnd tasks::listShortcuts(const TaskRun &)
{
    // The command makes the folder of the desktop where it is missing.
    const QDir folder(desktopFolder(doctor::thisMachine()));
    const QStringList files =
        folder.entryList({QStringLiteral("vyr-office*desktop")}, QDir::Files | QDir::System);
    const QJsonObject state{
        {QStringLiteral("icon"), files.join(QLatin1Char('|'))},
        {QStringLiteral("mode"), componentMode(doctor::thisMachine())},
        {QStringLiteral("chartboard"), krt::kcmc::support(QStringLiteral("ChartBoard"))},
        {QStringLiteral("docket"), krt::kcmc::support(QStringLiteral("DocketComponent"))},
        {QStringLiteral("fixedcomponent"), krt::kcmc::support(QStringLiteral("FixedComponent"))}};
    TaskEnd end;
    end.answer.insert(QStringLiteral("envelope"), QJsonObject{{QStringLiteral("result"), state}});
    return end;
}

} // namespace helio
