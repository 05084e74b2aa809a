#include "helio/runtime/search/hitqueue.h"

#include <chrono>
#include <utility>

namespace helio {

namespace {

constexpr std::size_t mostWaitingGroups = 32;

} // namespace

HitQueue::HitQueue(std::function<void()> wakeUp) : m_wakeUp(std::move(wakeUp)) {}

void HitQueue::put(FoundFiles &&hits)
{
    std::unique_lock<std::mutex> lock(m_guard);
    m_changed.wait(lock, [this] { return m_waiting.size() < mostWaitingGroups || m_isStopped; });
    if (m_isStopped || hits.empty())
        return;
    m_waiting.push_back(std::move(hits));
    wakeReporter();
}

void HitQueue::end()
{
    const std::lock_guard<std::mutex> lock(m_guard);
    m_hasEnded = true;
    wakeReporter();
}

bool HitQueue::isStoppedWithin(int milliseconds)
{
    std::unique_lock<std::mutex> lock(m_guard);
    return m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                              [this] { return m_isStopped.load(); });
}

HitQueue::State HitQueue::take(FoundFiles &hits)
{
    const std::lock_guard<std::mutex> lock(m_guard);
    if (m_waiting.empty()) {
        m_isReporterAsleep = !m_hasEnded;
        return m_hasEnded ? State::Ended : State::Empty;
    }
    hits = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_changed.notify_all();
    return State::Hits;
}

void HitQueue::stop()
{
    const std::lock_guard<std::mutex> lock(m_guard);
    m_isStopped = true;
    m_wakeUp = nullptr;
    m_waiting.clear();
    m_changed.notify_all();
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
