#include "fleet/report/collection.h"

#include <QDateTime>
#include <QSysInfo>

#include <algorithm>
#include <tuple>

#include "doctor/doctor.h"
#include "doctor/probes/facts.h"
#include "fleet/report/groups.h"

namespace fleet {

namespace {

void check(const doctor::Doctor &doctor, const QString &locale, Report &report)
{
    doctor.run({}, locale, [&report](const doctor::CheckResult &result) {
        for (const doctor::Finding &finding : result.findings)
            report.findings.append({finding.check, nameOf(finding.state), finding.text});
        if (result.outcome == doctor::CheckResult::Outcome::Failed)
            report.unknown.append(result.check + QStringLiteral(": ") + result.reason);
        return true;
    });
    std::sort(report.findings.begin(), report.findings.end(),
              [](const ReportedFinding &one, const ReportedFinding &other) {
                  return std::tie(one.check, one.text) < std::tie(other.check, other.text);
              });
    report.unknown.sort();
}

} // namespace

Report collectReport(const doctor::Machine &machine, const doctor::Doctor &doctor,
                     const QString &locale)
{
    doctor::Facts shared;
    Report report;
    report.host = QSysInfo::machineHostName();
    report.user = doctor::accountOf(machine, machine.user).name;
    report.home = machine.home();
    report.made = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    report.groups = {
        {QStringLiteral("system"), systemFacts(machine)},
        {QStringLiteral("hardware"), hardwareFacts(machine)},
        {QStringLiteral("storage"), storageFacts(machine)},
        {QStringLiteral("locale"), localeFacts(machine)},
        {QStringLiteral("environment"), environmentFacts(machine)},
        {QStringLiteral("desktop"), desktopFacts(machine)},
        {QStringLiteral("packages"), packageFacts(machine, shared)},
        {QStringLiteral("fonts"), fontFacts(machine, shared)},
        {QStringLiteral("suite"), suiteFacts(machine, shared)},
        {QStringLiteral("suite-settings"), suiteSettings(machine, shared, report.unknown)},
        {QStringLiteral("associations"), associationFacts(machine)},
        {QStringLiteral("input"), inputFacts(machine)},
    };
    check(doctor, locale, report);
    return report;
}

} // namespace fleet
