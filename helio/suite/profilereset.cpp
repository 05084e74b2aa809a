#include "helio/suite/profilereset.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

#include "doctor/machine/filereading.h"
#include "doctor/repairs/draft.h"
#include "texts/texts.h"

namespace helio {

namespace {

constexpr int privateFolder = 0700;
constexpr int mostFolders = 100;
constexpr int mostEntries = 10'000;

/// A free name beside the profile, in the order of time.
QString freeFolder(const QString &profile, const doctor::Draft &draft)
{
    const QString name = profile + QLatin1String(suites::earlierEnding) +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
    for (int number = 2; number < mostFolders; ++number) {
        const QString path = number > 2 ? QStringLiteral("%1-%2").arg(name).arg(number - 1) : name;
        if (!draft.exists(path))
            return path;
    }
    return {};
}

/// Moves entries of @p from to @p to. Returns why that cannot be done.
QString moveAll(const QStringList &names, const QString &from, const QString &to,
                doctor::Draft &draft)
{
    for (const QString &name : names) {
        QString problem = draft.move(from + QLatin1Char('/') + name, to + QLatin1Char('/') + name);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString moveAside(const QStringList &names, const QString &profile, doctor::Draft &draft)
{
    if (names.isEmpty())
        return {};
    const QString folder = freeFolder(profile, draft);
    if (folder.isEmpty())
        return texts::tr("there are too many earlier profiles beside %1").arg(profile);
    const QString problem = draft.makeDirectory(folder, privateFolder);
    return problem.isEmpty() ? moveAll(names, profile, folder, draft) : problem;
}

doctor::Plan planOf(const QString &repair, const doctor::Draft &draft, const QString &refusal)
{
    const doctor::Plan plan{QStringLiteral("suite.profile"), repair, draft.changes(), refusal};
    return refusal.isEmpty() ? plan : doctor::Plan{plan.check, repair, {}, refusal};
}

} // namespace

QString runningProblem(const suites::Installation &installation, const doctor::Machine &machine)
{
    const suites::Description &description = *suites::descriptionNamed(installation.suite);
    const QVector<qint64> processes = suites::processesOf(description, machine);
    return processes.isEmpty() ? QString()
                               : texts::tr("%1 (process %2) is running: close it first")
                                     .arg(description.name)
                                     .arg(processes.first());
}

doctor::Plan resetPlan(const suites::State &state, const QStringList &keep,
                       const doctor::Machine &machine)
{
    doctor::Draft draft(machine);
    QStringList names;
    for (const suites::PartSize &part : state.profile.parts) {
        if (!keep.contains(part.part))
            names += part.names;
    }
    QString refusal = runningProblem(state.installation, machine);
    if (refusal.isEmpty() && names.isEmpty())
        refusal = texts::tr("there is nothing to reset");
    if (refusal.isEmpty())
        refusal = moveAside(names, state.profile.path, draft);
    return planOf(QStringLiteral("reset"), draft, refusal);
}

doctor::Plan restorePlan(const suites::State &state, const doctor::Machine &machine)
{
    doctor::Draft draft(machine);
    const QString &profile = state.profile.path;
    const QString earlier = state.profile.earlier;
    QString refusal = runningProblem(state.installation, machine);
    if (refusal.isEmpty() && earlier.isEmpty())
        refusal = texts::tr("there is no earlier profile");
    if (!refusal.isEmpty())
        return planOf(QStringLiteral("restore"), draft, refusal);
    const QStringList names =
        doctor::namesIn(machine.located(earlier), mostEntries).value_or(QStringList());
    QStringList occupied;
    std::copy_if(
        names.begin(), names.end(), std::back_inserter(occupied),
        [&](const QString &name) { return draft.exists(profile + QLatin1Char('/') + name); });
    refusal = moveAside(occupied, profile, draft);
    if (refusal.isEmpty())
        refusal = moveAll(names, earlier, profile, draft);
    return planOf(QStringLiteral("restore"), draft, refusal);
}

bool isMade(const doctor::Plan &plan)
{
    return std::all_of(plan.changes.begin(), plan.changes.end(), [](const doctor::Change &change) {
        return change.kind != doctor::Change::Kind::Move || QFileInfo::exists(change.target) ||
               QFileInfo(change.target).isSymLink();
    });
}

} // namespace helio
