// probechecks FILE checks|probes: prints how many milliseconds the checks of FILE take the doctor,
// or their probes alone when they are called one after the other.

#include <chrono>
#include <cstdio>
#include <cstring>

#include "doctor/format/checkreader.h"
#include "doctor/probes/facts.h"
#include "doctor/runner/runner.h"

namespace {

void runByDoctor(const QVector<doctor::CheckDefinition> &checks, const doctor::Machine &machine)
{
    doctor::runChecks(checks, machine, {}, [](const doctor::CheckResult &result) {
        if (result.outcome == doctor::CheckResult::Outcome::Failed)
            std::fprintf(stderr, "%s: %s\n", qPrintable(result.check), qPrintable(result.reason));
        return true;
    });
}

void callProbes(const QVector<doctor::CheckDefinition> &checks, const doctor::Machine &machine)
{
    doctor::Facts facts;
    for (const doctor::CheckDefinition &check : checks) {
        const doctor::Deadline deadline(check.limit);
        const doctor::ExpandedArguments expansion = doctor::expandedArguments(
            check.look.arguments, check.look.probe->parameters, {}, machine);
        check.look.probe->look(expansion.arguments, {machine, deadline, facts});
    }
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    const doctor::CheckFile file = doctor::readCheckFile(QString::fromLocal8Bit(argv[1]));
    for (const doctor::Mistake &mistake : file.mistakes)
        std::fprintf(stderr, "%d:%d: %s\n", mistake.line, mistake.column,
                     qPrintable(mistake.message));
    if (!file.mistakes.isEmpty())
        return 1;
    const doctor::Machine machine = doctor::thisMachine();
    const auto begin = std::chrono::steady_clock::now();
    if (std::strcmp(argv[2], "checks") == 0)
        runByDoctor(file.checks, machine);
    else
        callProbes(file.checks, machine);
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
    std::printf("%.3f\n", time.count());
    return 0;
}
