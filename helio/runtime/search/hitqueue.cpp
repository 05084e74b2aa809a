#include "helio/runtime/search/hitqueue.h"

#include <QDeadlineTimer>

#include <utility>

namespace helio {

namespace {

constexpr std::size_t mostWaitingHits = 4096;

} // namespace

HitQueue::HitQueue(std::function<void()> wakeUp) : m_wakeUp(std::move(wakeUp)) {}

void HitQueue::put(const FileHit &hit)
{
    QMutexLocker locker(&m_guard);
    while (m_hits.size() >= mostWaitingHits && !m_isStopped)
        m_changed.wait(&m_guard);
    if (m_isStopped)
        return;
    m_hits.push_back(hit);
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

HitQueue::State HitQueue::take(FileHit *hit)
{
    const QMutexLocker locker(&m_guard);
    if (m_hits.empty()) {
        m_isReporterAsleep = !m_hasEnded;
        return m_hasEnded ? State::Ended : State::Empty;
    }
    *hit = std::move(m_hits.front());
    m_hits.pop_front();
    if (m_hits.size() == mostWaitingHits / 2)
        m_changed.wakeAll();
    return State::Hit;
}

void HitQueue::stop()
{
    const QMutexLocker locker(&m_guard);
    m_isStopped = true;
    m_wakeUp = nullptr;
    m_hits.clear();
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
