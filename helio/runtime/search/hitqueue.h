#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "helio/runtime/search/foundfile.h"

namespace helio {

/// Hands what a search finds from the thread that finds it to the thread that reports it. The
/// finder waits while the reporter is far behind.
class HitQueue
{
public:
    enum class State {
        Hits,
        Empty,
        Ended
    };

    /// @p wakeUp runs on the finder's thread when there is something to take after take() gave
    /// State::Empty, and before the first take(); never after stop().
    explicit HitQueue(std::function<void()> wakeUp);

    // For the finder.
    void put(FoundFiles &&hits);
    void end();

    /// Waits; true when the search was stopped meanwhile.
    bool isStoppedWithin(int milliseconds);

    // For the reporter.
    State take(FoundFiles *hits);
    void stop();

    bool isStopped() const;

private:
    void wakeReporter();

    std::mutex m_guard;
    std::condition_variable m_changed;
    std::deque<FoundFiles> m_waiting;
    std::function<void()> m_wakeUp;
    bool m_isReporterAsleep = true;
    bool m_hasEnded = false;
    std::atomic_bool m_isStopped{false};
};

} // namespace helio
