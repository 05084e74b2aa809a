#include "helio/doctor/doctorworker.h"

#include <QJsonArray>

#include <algorithm>
#include <utility>

#include "helio/doctor/checkups/checkuphistory.h"
#include "helio/doctor/doctorlines.h"
#include "helio/doctor/verifiedrepair.h"
#include "texts/texts.h"

namespace helio {

namespace {

/// They hold the contents of files; nobody has as many open.
constexpr int mostPlans = 50;
/// Longer than any view waits for its command: the page is gone.
constexpr qint64 longestWatchMs = 180000;

QJsonObject result(const QJsonObject &value)
{
    return {{QStringLiteral("result"), value}};
}

QJsonObject error(const QString &reason)
{
    return {{QStringLiteral("error"), reason}};
}

QJsonArray changeLines(const QString &repair, const QVector<doctor::Change> &changes)
{
    QJsonArray lines;
    for (const doctor::Change &change : changes)
        lines.append(changeLine(repair, change));
    return lines;
}

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

QStringList textsOf(const QJsonValue &list)
{
    QStringList texts;
    for (const QJsonValue text : list.toArray())
        texts.append(text.toString());
    return texts;
}

void note(const doctor::CheckResult &ended, Checkup &checkup)
{
    using Outcome = doctor::CheckResult::Outcome;
    if (ended.outcome == Outcome::Found)
        checkup.found.append(ended.check);
    else if (ended.outcome == Outcome::Ok)
        checkup.well.append(ended.check);
    else if (ended.outcome == Outcome::Failed)
        checkup.failed.append(ended.check);
}

QString commandOf(const DoctorRequest &request)
{
    return request.arguments.value(QStringLiteral("command")).toString();
}

void say(const QStringList &notes, const DoctorRequest &request)
{
    for (const QString &note : notes)
        request.say(noteLine(note));
}

} // namespace

QString DoctorRequest::language() const
{
    return arguments.value(QStringLiteral("language")).toString(QStringLiteral("en"));
}

const QVector<DoctorWorker::Operation> &DoctorWorker::table()
{
    static const QVector<Operation> operations{
        {"doctor.list", &DoctorWorker::list},
        {"doctor.look", &DoctorWorker::look},
        {"doctor.checkups", &DoctorWorker::checkups},
        {"doctor.plan", &DoctorWorker::plan},
        {"doctor.fix", &DoctorWorker::fix},
        {"doctor.undo", &DoctorWorker::undo},
        {"doctor.history", &DoctorWorker::history},
        {"doctor.preview", &DoctorWorker::preview},
        {"doctor.watch", &DoctorWorker::watch},
        {"doctor.watched", &DoctorWorker::watched},
        {"why.open", &DoctorWorker::whyOpen},
        {"why.denied", &DoctorWorker::whyDenied},
        {"why.input", &DoctorWorker::whyInput},
        {"suite.describe", &DoctorWorker::suiteDescribe},
        {"suite.choose", &DoctorWorker::suiteChoose},
        {"suite.plan", &DoctorWorker::suitePlan},
        {"suite.start", &DoctorWorker::suiteStart},
    };
    return operations;
}

QStringList DoctorWorker::operations()
{
    QStringList names;
    for (const Operation &operation : table())
        names.append(QLatin1String(operation.name));
    return names;
}

QJsonObject DoctorWorker::answer(const DoctorRequest &request)
{
    const auto found =
        std::find_if(table().begin(), table().end(), [&request](const Operation &operation) {
            return request.operation == QLatin1String(operation.name);
        });
    if (found == table().end())
        return error(QStringLiteral("no such operation: %1").arg(request.operation));
    if (!m_isLoaded)
        load();
    const texts::InLanguage inLanguage(
        request.arguments.value(QStringLiteral("language")).toString());
    return (this->*found->answer)(request);
}

void DoctorWorker::load()
{
    m_isLoaded = true;
    m_doctor.load(doctor::checkDirectories(m_doctor.machine(), m_shippedChecks));
}

QJsonObject DoctorWorker::list(const DoctorRequest &request)
{
    load();
    QJsonArray checks;
    for (const doctor::CheckDefinition &check : m_doctor.checks())
        checks.append(listedLine(check, request.language()));
    QJsonArray mistakes;
    for (const doctor::FileProblem &problem : m_doctor.problems())
        mistakes.append(mistakeLine(problem));
    return result({{QStringLiteral("checks"), checks}, {QStringLiteral("mistakes"), mistakes}});
}

QJsonObject DoctorWorker::look(const DoctorRequest &request)
{
    const QStringList ids = textsOf(request.arguments.value(QStringLiteral("checks")));
    for (const QString &id : ids) {
        if (!m_doctor.check(id))
            return error(QStringLiteral("no such check: %1").arg(id));
    }
    recover(request);
    int checks = 0;
    int findings = 0;
    int failed = 0;
    Checkup checkup;
    m_doctor.run(ids, request.language(), [&](const doctor::CheckResult &ended) {
        if (request.isStopped())
            return false;
        ++checks;
        note(ended, checkup);
        findings += ended.findings.size();
        failed += ended.outcome == doctor::CheckResult::Outcome::Failed ? 1 : 0;
        report(ended, request);
        return true;
    });
    QJsonObject summary = summaryLine(checks, findings, failed);
    const bool isWhole = ids.isEmpty() && checks > 0 && checks == m_doctor.checks().size();
    if (isWhole && request.arguments.value(QStringLiteral("keep")).toBool()) {
        checkup.until = QDateTime::currentDateTimeUtc();
        addChange(CheckupHistory().add(checkup), summary);
    }
    return result(summary);
}

QJsonObject DoctorWorker::checkups(const DoctorRequest & /*request*/)
{
    QJsonArray lines;
    for (const Checkup &checkup : CheckupHistory().read())
        lines.append(checkupLine(checkup));
    return result({{QStringLiteral("checkups"), lines}});
}

void DoctorWorker::report(const doctor::CheckResult &result, const DoctorRequest &request)
{
    for (auto known = m_findings.begin(); known != m_findings.end();)
        known = known->check == result.check ? m_findings.erase(known) : std::next(known);
    request.say(checkLine(result));
    for (const doctor::Finding &finding : result.findings) {
        m_findings.insert(++m_lastNumber, finding);
        QJsonObject line = findingLine(finding);
        line.insert(QStringLiteral("finding"), m_lastNumber);
        request.say(line);
    }
}

void DoctorWorker::recover(const DoctorRequest &request)
{
    endOldWatch(request);
    say(m_journal.recover(), request);
}

QJsonObject DoctorWorker::plan(const DoctorRequest &request)
{
    const QString repair = request.arguments.value(QStringLiteral("repair")).toString();
    QVector<doctor::Finding> findings;
    for (const QJsonValue number : request.arguments.value(QStringLiteral("findings")).toArray()) {
        const auto found = m_findings.constFind(number.toInt());
        if (found == m_findings.constEnd())
            return error(QStringLiteral("no such finding, look again"));
        if (!found->repairs.contains(repair) ||
            (!findings.isEmpty() && findings.first().check != found->check))
            return error(QStringLiteral("no such repair of these findings"));
        findings.append(*found);
    }
    if (findings.isEmpty())
        return error(QStringLiteral("no finding was named"));
    QVector<doctor::Change> earlier;
    for (const QJsonValue number : request.arguments.value(QStringLiteral("after")).toArray()) {
        const auto planned = m_plans.constFind(number.toInt());
        if (planned == m_plans.constEnd())
            return error(QStringLiteral("no such plan, make one again"));
        earlier += planned->plan.changes;
    }
    const doctor::Plan plan = m_doctor.plan(findings, repair, earlier);
    return result(keep({plan, [this, plan, findings](const DoctorRequest &fixing) {
                            return repaired(plan, findings, fixing);
                        }}));
}

QJsonObject DoctorWorker::keep(const Planned &planned)
{
    m_plans.insert(++m_lastNumber, planned);
    if (m_plans.size() > mostPlans)
        m_plans.erase(m_plans.begin());
    return {{QStringLiteral("plan"), m_lastNumber},
            {QStringLiteral("changes"), changeLines(planned.plan.repair, planned.plan.changes)},
            {QStringLiteral("refusal"), planned.plan.refusal}};
}

QJsonObject DoctorWorker::fix(const DoctorRequest &request)
{
    const int number = request.arguments.value(QStringLiteral("plan")).toInt();
    if (!m_plans.contains(number))
        return error(QStringLiteral("no such plan, make one again"));
    const Planned planned = m_plans.take(number);
    endOldWatch(request);
    const RepairOutcome outcome = planned.make(request);
    say(outcome.notes, request);
    return result(repairLine(outcome));
}

RepairOutcome DoctorWorker::repaired(const doctor::Plan &plan,
                                     const QVector<doctor::Finding> &findings,
                                     const DoctorRequest &request)
{
    Repaired repaired{findings, {}};
    for (const doctor::Finding &known : qAsConst(m_findings)) {
        const auto isSame = [&known](const doctor::Finding &one) { return one.text == known.text; };
        if (known.check == plan.check && std::none_of(findings.begin(), findings.end(), isSame))
            repaired.others.append(known);
    }
    return verifiedRepair(m_doctor, m_journal, plan, repaired, request.language());
}

QJsonObject DoctorWorker::undo(const DoctorRequest &request)
{
    const int number = request.arguments.value(QStringLiteral("journal")).toInt();
    endOldWatch(request);
    const doctor::JournalResult undone = m_journal.undo(number);
    say(undone.notes, request);
    return result(undoneLine(number, undone));
}

QJsonObject DoctorWorker::history(const DoctorRequest &request)
{
    recover(request);
    QJsonArray entries;
    for (const doctor::JournalEntry &entry : m_journal.history())
        entries.append(entryLine(entry));
    return result({{QStringLiteral("entries"), entries}});
}

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
    say(begun.notes, request);
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
    say(watch.journal.notes, request);
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
        say(m_journal.endWatch().journal.notes, request);
    }
}

} // namespace helio
