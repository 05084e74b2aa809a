#include "helio/doctor/doctorworker.h"

#include <QJsonArray>

#include <algorithm>

#include "helio/doctor/checkups/checkuphistory.h"
#include "helio/doctor/doctorlines.h"
#include "helio/doctor/verifiedrepair.h"
#include "texts/texts.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace helio {

namespace {

/// Gives the system back what a look at all files and settings has taken: the library keeps it for
/// threads that have ended.
void returnMemory()
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

/// They hold the contents of files; nobody has as many open.
constexpr int mostPlans = 50;

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

} // namespace

QString DoctorRequest::language() const
{
    return arguments.value(QStringLiteral("language")).toString(QStringLiteral("en"));
}

void DoctorRequest::sayNotes(const QStringList &notes) const
{
    for (const QString &note : notes)
        say(noteLine(note));
}

QJsonObject DoctorWorker::result(const QJsonObject &value)
{
    return {{QStringLiteral("result"), value}};
}

QJsonObject DoctorWorker::error(const QString &reason)
{
    return {{QStringLiteral("error"), reason}};
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
    returnMemory();
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
    request.sayNotes(m_journal.recover());
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
    request.sayNotes(outcome.notes);
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
    request.sayNotes(undone.notes);
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

} // namespace helio
