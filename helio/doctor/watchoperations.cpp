// The doctor's operations around the library's commands that repair.

#include <QJsonArray>

#include <algorithm>
#include <utility>

#include "helio/doctor/doctorlines.h"
#include "helio/doctor/doctorworker.h"
#include "helio/doctor/verifiedrepair.h"
#include "texts/texts.h"

namespace helio {

namespace {

/// Longer than any view waits for its command: the page is gone.
constexpr qint64 longestWatchMs = 180000;

QStringList watchedPaths(const CommandRepair &repair)
{
    return repair.paths + repair.derived;
}

/// Without what nobody needs to see.
QVector<doctor::Change> shownChanges(const CommandRepair &repair, QVector<doctor::Change> changes)
{
    const auto isDerived = [&repair](const doctor::Change &change) {
        return repair.derived.contains(change.path);
    };
    changes.erase(std::remove_if(changes.begin(), changes.end(), isDerived), changes.end());
    return changes;
}

QString commandOf(const DoctorRequest &request)
{
    return request.arguments.value(QStringLiteral("command")).toString();
}

} // namespace

QJsonObject DoctorWorker::preview(const DoctorRequest &request)
{
    const auto repair = commandRepair(commandOf(request), m_doctor.machine());
    if (!repair)
        return error(QStringLiteral("no such repair: %1").arg(commandOf(request)));
    return result({{QStringLiteral("changes"), changeLines(repair->command, repair->changes)},
                   {QStringLiteral("paths"), QJsonArray::fromStringList(repair->paths)},
                   {QStringLiteral("lasting"),
                    m_journal.watchRefusal(watchedPaths(*repair)).value_or(QString())}});
}

QJsonObject DoctorWorker::watch(const DoctorRequest &request)
{
    const auto repair = commandRepair(commandOf(request), m_doctor.machine());
    if (!repair)
        return error(QStringLiteral("no such repair: %1").arg(commandOf(request)));
    endOldWatch(request);
    const doctor::JournalResult begun =
        m_journal.beginWatch(repair->subject, repair->command, watchedPaths(*repair));
    request.sayNotes(begun.notes);
    if (begun.outcome == doctor::JournalResult::Outcome::Applied) {
        m_watched = repair;
        m_watchTime.start();
    }
    return result(
        {{QStringLiteral("journal"), begun.number}, {QStringLiteral("refusal"), begun.reason}});
}

QJsonObject DoctorWorker::watched(const DoctorRequest &request)
{
    if (!m_watched)
        return error(QStringLiteral("nothing is watched"));
    const CommandRepair repair = *std::exchange(m_watched, std::nullopt);
    const doctor::WatchResult watch = m_journal.endWatch();
    request.sayNotes(watch.journal.notes);
    RepairOutcome outcome{repair.subject,       repair.command,       RepairOutcome::Result::Failed,
                          watch.journal.number, watch.journal.reason, {}};
    const QStringList remaining = check(repair.checks, request);
    if (outcome.reason.isEmpty() && !remaining.isEmpty()) {
        outcome.reason =
            texts::tr("This was still found afterwards: %1").arg(remaining.join(QLatin1Char(' ')));
    } else if (outcome.reason.isEmpty()) {
        outcome.result = watch.journal.number == 0 ? RepairOutcome::Result::Unchanged
                                                   : RepairOutcome::Result::Repaired;
    }
    QJsonObject line = repairLine(outcome);
    line.insert(QStringLiteral("changes"),
                changeLines(repair.command, shownChanges(repair, watch.changes)));
    return result(line);
}

QStringList DoctorWorker::check(const QStringList &ids, const DoctorRequest &request)
{
    QStringList known;
    std::copy_if(ids.begin(), ids.end(), std::back_inserter(known),
                 [this](const QString &id) { return m_doctor.check(id); });
    QStringList found;
    // Without ids it would run them all.
    if (known.isEmpty())
        return found;
    m_doctor.run(known, request.language(), [&](const doctor::CheckResult &ended) {
        for (const doctor::Finding &finding : ended.findings)
            found.append(finding.text);
        report(ended, request);
        return true;
    });
    return found;
}

void DoctorWorker::endOldWatch(const DoctorRequest &request)
{
    if (m_watched && m_watchTime.hasExpired(longestWatchMs)) {
        m_watched.reset();
        request.sayNotes(m_journal.endWatch().journal.notes);
    }
}

} // namespace helio
