#include "helio/doctor/doctorworker.h"
#include "helio/suite/cleanstart.h"
#include "helio/suite/profilereset.h"
#include "helio/suite/statejson.h"
#include "texts/texts.h"

namespace helio {

namespace {

QJsonObject ended(const char *how, const QJsonValue &value)
{
    return {{QLatin1String(how), value}};
}

QString argument(const DoctorRequest &request, const char *name)
{
    return request.arguments.value(QLatin1String(name)).toString();
}

QJsonObject noSuite()
{
    return ended("error", QStringLiteral("no suite is installed"));
}

RepairOutcome made(doctor::Journal &journal, const doctor::Plan &plan,
                   const suites::Installation &installation, const doctor::Machine &machine)
{
    // It may have been started since the plan was shown.
    doctor::Plan checked = plan;
    if (checked.refusal.isEmpty())
        checked.refusal = runningProblem(installation, machine);
    return verifiedRepair(journal, checked, [&plan]() -> Verification {
        return {isMade(plan) ? Verification::State::Gone : Verification::State::Remains, {}};
    });
}

} // namespace

QJsonObject DoctorWorker::suiteDescribe(const DoctorRequest & /*request*/)
{
    return ended("result", suiteDescription(m_doctor.machine()));
}

QJsonObject DoctorWorker::suiteChoose(const DoctorRequest &request)
{
    const QString folder = argument(request, "folder");
    for (const suites::Installation &one : allInstallations(m_doctor.machine())) {
        if (one.folder != folder)
            continue;
        const QString problem = suites::keepChoice(one, m_doctor.machine());
        return problem.isEmpty() ? suiteDescribe(request) : ended("error", problem);
    }
    return ended("error", texts::tr("There is no suite in %1").arg(folder));
}

QJsonObject DoctorWorker::suitePlan(const DoctorRequest &request)
{
    const QString repair = argument(request, "repair");
    const bool isReset = repair == QLatin1String("reset");
    if (!isReset && repair != QLatin1String("restore"))
        return ended("error", QStringLiteral("no such repair: %1").arg(repair));
    const doctor::Machine &machine = m_doctor.machine();
    const std::optional<suites::State> state = stateOfChosen(machine);
    if (!state)
        return noSuite();
    const QStringList kept =
        request.arguments.value(QStringLiteral("keep")).toVariant().toStringList();
    const doctor::Plan plan =
        isReset ? resetPlan(*state, kept, machine) : restorePlan(*state, machine);
    const auto make = [this, plan, installation = state->installation](const DoctorRequest &) {
        return made(m_journal, plan, installation, m_doctor.machine());
    };
    return ended("result", keep({plan, make}));
}

QJsonObject DoctorWorker::suiteStart(const DoctorRequest & /*request*/)
{
    const doctor::Machine &machine = m_doctor.machine();
    const auto chosen = suites::chosen(allInstallations(machine), machine);
    return chosen ? ended("result", QJsonObject{{QStringLiteral("refusal"), startClean(*chosen)}})
                  : noSuite();
}

} // namespace helio
