#include "helio/runtime/search/hitqueue.h"

#include <QDeadlineTimer>

#include <utility>

namespace helio {

namespace {

constexpr std::size_t mostWaitingGroups = 32;

} // namespace

HitQueue::HitQueue(std::function<void()> wakeUp) : m_wakeUp(std::move(wakeUp)) {}

void HitQueue::put(FoundFiles &&hits)
{
    QMutexLocker locker(&m_guard);
    while (m_waiting.size() >= mostWaitingGroups && !m_isStopped)
        m_changed.wait(&m_guard);
    if (m_isStopped || hits.empty())
        return;
    m_waiting.push_back(std::move(hits));
    wakeReporter();
}

void HitQueue::end()
{
    const QMutexLocker locker(&m_guard);
    m_hasEnded = true;
    wakeReporter();
}

bool HitQueue::isStoppedWithin(int milliseconds)
{
    QMutexLocker locker(&m_guard);
    const QDeadlineTimer deadline(milliseconds);
    while (!m_isStopped && m_changed.wait(&m_guard, deadline)) {
    }
    return m_isStopped;
}

HitQueue::State HitQueue::take(FoundFiles *hits)
{
    const QMutexLocker locker(&m_guard);
    if (m_waiting.empty()) {
        m_isReporterAsleep = !m_hasEnded;
        return m_hasEnded ? State::Ended : State::Empty;
    }
    *hits = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_changed.wakeAll();
    return State::Hits;
}

void HitQueue::stop()
{
    const QMutexLocker locker(&m_guard);
    m_isStopped = true;
    m_wakeUp = nullptr;
    m_waiting.clear();
    m_changed.wakeAll();
}

bool HitQueue::isStopped() const
{
    return m_isStopped;
}

void HitQueue::wakeReporter()
{
    if (m_isReporterAsleep && m_wakeUp)
        m_wakeUp();
    m_isReporterAsleep = false;
}

} // namespace helio
