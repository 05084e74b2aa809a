#include "envcheck/vyrenvcheckthread.h"

#include <QDeadlineTimer>

#include "envcheck/checkpage.h"
#include "envcheck/checktoolanswer.h"
#include "envcheck/toolprocess.h"
#include "host/krt.h"
#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

/// How long a running check may take to end with the process.
constexpr int graceMs = 3000;
/// How long the shell may take to notice that the tool is gone.
constexpr int endingMs = 2000;
constexpr int killIntervalMs = 100;

QJsonObject findings(const EnvironmentCheck &check, const QString &value)
{
    return {{QStringLiteral("value"), QString::fromLatin1(value.toUtf8().toBase64())},
            {QStringLiteral("cmd"), check.type},
            {QStringLiteral("app"), check.app}};
}

} // namespace

VyrEnvCheckThread::VyrEnvCheckThread(CheckPage &page, QObject *parent)
    : QThread(parent), m_page(page)
{
}

VyrEnvCheckThread::~VyrEnvCheckThread()
{
    requestStop();
    if (endsWithin(graceMs))
        return;
    const QDeadlineTimer deadline(endingMs);
    do {
        // Again each time: the tool may not have been started before.
        killOwnProcesses(m_toolPath);
    } while (!endsWithin(killIntervalMs) && !deadline.hasExpired());
    // A shell that still waits for the tool does so forever, and the process must end.
    if (isRunning()) {
        terminate();
        wait(endingMs);
    }
}

void VyrEnvCheckThread::check(const EnvironmentCheck &wanted)
{
    requestStop();
    // Needed even if the check is over: a thread that is still ending cannot be started again.
    wait();
    m_toolPath = checkToolPath();
    m_check = wanted;
    m_stopRequested = false;
    // Set here, not by the thread: a stop request right after this call must not be lost. Reading
    // it too orders what the check before did.
    m_isRunning.exchange(true);
    start(QThread::InheritPriority);
}

bool VyrEnvCheckThread::endsWithin(int milliseconds)
{
    return wait(milliseconds) && !m_isRunning;
}

void VyrEnvCheckThread::requestStop()
{
    if (m_isRunning)
        m_stopRequested = true;
}

QJsonObject VyrEnvCheckThread::keptResults() const
{
    const std::lock_guard lock(m_resultsGuard);
    QJsonObject results;
    for (auto result = m_results.begin(); result != m_results.end(); ++result)
        results.insert(QString::fromLatin1(result.key().toUtf8()), result.value());
    return results;
}

void VyrEnvCheckThread::run()
{
    checkOnce();
    m_isRunning = false;
}

void VyrEnvCheckThread::checkOnce()
{
    krt::ksafe::KProcess::Execute(m_toolPath, {m_check.type, m_check.app, m_check.argument});
    if (m_stopRequested)
        return;
    // Only the answer file counts, not how the tool ended.
    const QString value = checkToolAnswer(m_check);
    if (!m_page.isOpen())
        return;
    keep(value);
    if (!m_stopRequested)
        m_page.show(findings(m_check, value));
}

void VyrEnvCheckThread::keep(const QString &value)
{
    const std::lock_guard lock(m_resultsGuard);
    m_results.insert(m_check.type + QLatin1Char('-') + m_check.app, value);
}

} // namespace OfficeAssiant
