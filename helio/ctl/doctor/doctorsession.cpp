#include "helio/ctl/doctor/doctorsession.h"

#include <algorithm>

#include "doctor/journal/journal.h"
#include "suites/installation.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using Result = helio::RepairOutcome::Result;

constexpr std::chrono::seconds suiteLimit(5);

bool isForAdministrator(const doctor::Change &change)
{
    return change.kind == doctor::Change::Kind::Command;
}

} // namespace

void DoctorSession::look(const QStringList &ids)
{
    m_doctor.run(ids, m_locale, [this](const doctor::CheckResult &result) {
        ++m_checks;
        m_failed += result.outcome == doctor::CheckResult::Outcome::Failed ? 1 : 0;
        m_findings += result.findings;
        m_printer.printCheck(*m_doctor.check(result.check), result);
        return true;
    });
}

DoctorStatus DoctorSession::summary(bool hasRemaining)
{
    m_printer.printSummary(m_checks, m_findings.size(), m_failed);
    if (m_failed > 0)
        return CheckFailed;
    return hasRemaining ? Found : Done;
}

DoctorStatus DoctorSession::check(const QStringList &ids)
{
    look(ids);
    return summary(!m_findings.isEmpty());
}

void DoctorSession::printSuites()
{
    for (const suites::Description &description : suites::descriptions()) {
        const QVector<suites::Installation> found =
            suites::installations(description, m_doctor.machine(), doctor::Deadline(suiteLimit));
        const std::optional<suites::Installation> chosen =
            suites::chosen(found, m_doctor.machine());
        for (const suites::Installation &installation : found)
            m_printer.printSuite(installation, installation.folder == chosen->folder);
    }
}

DoctorStatus DoctorSession::choose(const QString &folder)
{
    for (const suites::Description &description : suites::descriptions()) {
        for (const suites::Installation &installation :
             suites::installations(description, m_doctor.machine(), doctor::Deadline(suiteLimit))) {
            if (installation.folder != folder)
                continue;
            const QString reason = suites::keepChoice(installation, m_doctor.machine());
            if (!reason.isEmpty())
                m_printer.printNote(texts::tr("The choice cannot be kept: %1").arg(reason));
            printSuites();
            return reason.isEmpty() ? Done : Found;
        }
    }
    m_printer.printNote(texts::tr("There is no suite in %1").arg(folder));
    printSuites();
    return Found;
}

DoctorStatus DoctorSession::list()
{
    printSuites();
    for (const doctor::CheckDefinition &check : m_doctor.checks())
        m_printer.printListed(check);
    return Done;
}

QString DoctorSession::repairFor(const doctor::Finding &finding, const DoctorLine &line) const
{
    if (line.repair.isEmpty())
        return finding.repairs.value(0);
    return finding.repairs.contains(line.repair) ? line.repair : QString();
}

helio::RepairOutcome DoctorSession::apply(const doctor::Finding &finding, const doctor::Plan &plan)
{
    helio::Repaired repaired{{finding}, {}};
    for (const doctor::Finding &known : qAsConst(m_findings)) {
        if (known.check == finding.check && known.text != finding.text)
            repaired.others.append(known);
    }
    helio::RepairOutcome outcome =
        helio::verifiedRepair(m_doctor, m_journal, plan, repaired, m_locale);
    for (const QString &note : outcome.notes)
        m_printer.printNote(note);
    return outcome;
}

helio::RepairOutcome DoctorSession::repair(const doctor::Finding &finding, const DoctorLine &line)
{
    helio::RepairOutcome outcome{
        finding.check, repairFor(finding, line), Result::Refused, 0, {}, {}};
    if (outcome.repair.isEmpty()) {
        outcome.reason = texts::tr("there is no such repair");
        return outcome;
    }
    const doctor::Plan plan = m_doctor.plan(finding, outcome.repair);
    if (!plan.refusal.isEmpty()) {
        outcome.reason = plan.refusal;
        return outcome;
    }
    for (const doctor::Change &change : plan.changes)
        m_printer.printChange(plan.repair, change);
    if (line.dryRun) {
        outcome.result = Result::Planned;
        return outcome;
    }
    if (std::all_of(plan.changes.begin(), plan.changes.end(), isForAdministrator)) {
        outcome.reason = texts::tr("the administrator has to run the command");
        return outcome;
    }
    if (!line.yes && !m_printer.asks(texts::tr("Repair?"))) {
        outcome.reason = texts::tr("it was not confirmed");
        return outcome;
    }
    return apply(finding, plan);
}

DoctorStatus DoctorSession::fix(const DoctorLine &line)
{
    look(line.checks);
    bool isLeft = false;
    for (const doctor::Finding &finding : qAsConst(m_findings)) {
        if (finding.repairs.isEmpty()) {
            isLeft = true;
            continue;
        }
        const helio::RepairOutcome outcome = repair(finding, line);
        m_printer.printRepair(outcome);
        isLeft = isLeft || outcome.result != Result::Repaired;
    }
    return summary(isLeft);
}

DoctorStatus DoctorSession::undo(int number)
{
    const QVector<doctor::JournalEntry> entries = m_journal.history();
    if (number == 0) {
        const auto latest = std::find_if(entries.rbegin(), entries.rend(), [](const auto &entry) {
            return entry.state == doctor::JournalEntry::State::Applied;
        });
        number = latest == entries.rend() ? 0 : latest->number;
    }
    doctor::JournalResult result;
    if (number == 0)
        result.reason = texts::tr("There is no repair to undo.");
    else
        result = m_journal.undo(number);
    for (const QString &note : qAsConst(result.notes))
        m_printer.printNote(note);
    m_printer.printUndone(number, result);
    return result.outcome == doctor::JournalResult::Outcome::Undone ? Done : Found;
}

DoctorStatus DoctorSession::history()
{
    const QVector<doctor::JournalEntry> entries = m_journal.history();
    for (const doctor::JournalEntry &entry : entries)
        m_printer.printEntry(entry);
    return Done;
}

} // namespace ctl
