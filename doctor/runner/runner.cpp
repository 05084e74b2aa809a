#include "doctor/runner/runner.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

#include "doctor/probes/facts.h"
#include "doctor/probes/suiteprobe.h"
#include "doctor/runner/evaluation.h"
#include "texts/texts.h"

namespace doctor {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int mostFindings = 100;
/// What looks at the time itself ends within it.
constexpr std::chrono::milliseconds grace(500);
constexpr int fewestThreads = 2;
constexpr int mostThreads = 8;
/// Threads that are left behind; more would only hang in the same place.
constexpr int mostAbandoned = 32;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

Finding findingOf(const CheckDefinition &check, const Match &match, const QString &locale)
{
    Finding finding;
    finding.check = check.id;
    finding.state = check.state;
    finding.where = match.where;
    for (auto value = match.values.constBegin(); value != match.values.constEnd(); ++value)
        finding.values.insert(value.key(), value->shown());
    finding.text = filledIn(check.text.inLanguage(locale), finding.values);
    return finding;
}

/// The repairs that fit a case; a problem of their conditions fails the check.
QString addRepairs(const CheckDefinition &check, const Match &match, const Looking &looking,
                   Finding &finding)
{
    for (const RepairDefinition &repair : check.repairs) {
        if (repair.when) {
            const Matches fits = evaluated(*repair.when, match, looking);
            if (!fits.problem.isEmpty())
                return fits.problem;
            if (fits.matches.isEmpty())
                continue;
        }
        finding.repairs.append(repair.id);
    }
    return {};
}

QString addFindings(const CheckDefinition &check, const QVector<Match> &matches,
                    const Looking &looking, const QString &locale, CheckResult &result)
{
    for (const Match &match : matches) {
        Finding finding = findingOf(check, match, locale);
        const auto isSame = [&finding](const Finding &other) { return other.text == finding.text; };
        if (std::any_of(result.findings.begin(), result.findings.end(), isSame))
            continue;
        if (result.findings.size() == mostFindings) {
            result.reason = texts::tr("only the first %1 findings are listed").arg(mostFindings);
            return {};
        }
        QString problem = addRepairs(check, match, looking, finding);
        if (!problem.isEmpty())
            return problem;
        result.findings.append(finding);
    }
    return {};
}

/// Cases in which the check applies; the only one if it always does. All have what is known of the
/// check's suite.
Matches applicable(const CheckDefinition &check, const Match &known, const Looking &looking)
{
    return check.when ? evaluated(*check.when, known, looking) : Matches{{known}, {}};
}

CheckResult failed(CheckResult result, const QString &problem)
{
    result.outcome = CheckResult::Outcome::Failed;
    result.reason = problem;
    result.findings.clear();
    return result;
}

CheckResult skipped(CheckResult result, const QString &reason)
{
    result.outcome = CheckResult::Outcome::Skipped;
    result.reason = reason;
    return result;
}

CheckResult lookedAt(const CheckDefinition &check, const Looking &looking, const QString &locale)
{
    CheckResult result;
    result.check = check.id;
    Match suite;
    if (!check.suite.isEmpty()) {
        suite.values = valuesOfSuite(check.suite, looking);
        if (suite.values.isEmpty())
            return skipped(result, texts::tr("The suite is not installed."));
    }
    Matches cases = applicable(check, suite, looking);
    if (!cases.problem.isEmpty())
        return failed(result, cases.problem);
    if (cases.matches.isEmpty())
        return skipped(result, check.skipped.inLanguage(locale));
    for (Match &known : cases.matches) {
        // Where the check applies is not where something is wrong.
        known.where.clear();
        const Matches found = evaluated(check.look, known, looking);
        const QString problem = found.problem.isEmpty()
                                    ? addFindings(check, found.matches, looking, locale, result)
                                    : found.problem;
        if (!problem.isEmpty())
            return failed(result, problem);
    }
    if (!result.findings.isEmpty())
        result.outcome = CheckResult::Outcome::Found;
    return result;
}

/// What the threads of a run share. They keep it alive: a thread may come back after the run has
/// ended.
struct Run
{
    QVector<CheckDefinition> checks;
    Machine machine;
    QString locale;
    Facts facts;

    std::mutex mutex;
    std::condition_variable changed;
    int next = 0;
    /// By index, those that are under way.
    std::map<int, Clock::time_point> begun;
    std::deque<CheckResult> results;
};

/// Takes checks until there are none, or until the one that it was busy with was given up.
void work(const std::shared_ptr<Run> &run)
{
    std::unique_lock<std::mutex> lock(run->mutex);
    while (run->next < run->checks.size()) {
        const int index = run->next++;
        run->begun[index] = Clock::now();
        run->changed.notify_all();
        lock.unlock();
        const CheckResult result =
            runCheck(run->checks.at(index), run->machine, run->facts, run->locale);
        lock.lock();
        if (run->begun.erase(index) == 0)
            return;
        run->results.push_back(result);
        run->changed.notify_all();
    }
}

bool startThread(const std::shared_ptr<Run> &run)
{
    try {
        std::thread(work, run).detach();
        return true;
    } catch (const std::system_error &) {
        return false;
    }
}

/// Takes the checks that are over time out of those under way.
/// @return how many there were
int giveUpLate(Run &run)
{
    int count = 0;
    for (auto under = run.begun.begin(); under != run.begun.end();) {
        const CheckDefinition &check = run.checks.at(under->first);
        if (Clock::now() < under->second + check.limit + grace) {
            ++under;
            continue;
        }
        CheckResult result;
        result.check = check.id;
        result.seconds = secondsSince(under->second);
        run.results.push_back(
            failed(result, texts::tr("given up after %1 s").arg(result.seconds, 0, 'f', 1)));
        under = run.begun.erase(under);
        ++count;
    }
    return count;
}

Clock::time_point nextLimit(const Run &run)
{
    Clock::time_point earliest = Clock::now() + std::chrono::minutes(1);
    for (const auto &[index, begin] : run.begun)
        earliest = std::min(earliest, begin + run.checks.at(index).limit + grace);
    return earliest;
}

/// For checks that no thread is left for.
void failRest(Run &run)
{
    for (; run.next < run.checks.size(); ++run.next) {
        CheckResult result;
        result.check = run.checks.at(run.next).id;
        run.results.push_back(failed(result, texts::tr("too many other checks hang")));
    }
}

/// Waits for results until there are some, giving up what takes too long.
std::deque<CheckResult> nextResults(const std::shared_ptr<Run> &run, int &abandoned)
{
    std::unique_lock<std::mutex> lock(run->mutex);
    while (run->results.empty()) {
        run->changed.wait_until(lock, nextLimit(*run));
        const int late = giveUpLate(*run);
        abandoned += late;
        for (int i = 0; i < late && run->next < run->checks.size(); ++i) {
            if (abandoned > mostAbandoned || !startThread(run))
                failRest(*run);
        }
    }
    return std::exchange(run->results, {});
}

} // namespace

CheckResult runCheck(const CheckDefinition &check, const Machine &machine, Facts &facts,
                     const QString &locale)
{
    const Clock::time_point begin = Clock::now();
    const Deadline deadline(check.limit);
    CheckResult result = lookedAt(check, Looking{machine, deadline, facts}, locale);
    result.seconds = secondsSince(begin);
    return result;
}

void runChecks(const QVector<CheckDefinition> &checks, const Machine &machine,
               const QString &locale, const ResultHandler &handle)
{
    const auto run = std::make_shared<Run>();
    run->checks = checks;
    run->machine = machine;
    run->locale = locale;
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    const int threads = std::min(std::clamp(cores, fewestThreads, mostThreads), int(checks.size()));
    int started = 0;
    for (int i = 0; i < threads; ++i)
        started += startThread(run) ? 1 : 0;
    if (started == 0)
        work(run);
    int abandoned = 0;
    for (int reported = 0; reported < checks.size();) {
        for (const CheckResult &result : nextResults(run, abandoned)) {
            ++reported;
            if (!handle(result)) {
                const std::lock_guard<std::mutex> lock(run->mutex);
                run->next = run->checks.size();
                return;
            }
        }
    }
}

} // namespace doctor
