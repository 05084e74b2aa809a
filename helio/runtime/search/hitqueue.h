#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "helio/runtime/search/foundfile.h"

namespace helio {

/// Passes hits from the thread that finds them to the thread that reports them. The finder waits
/// while the reporter is far behind.
class HitQueue
{
public:
    enum class State {
        Hits,
        Empty,
        Ended
    };

    /// @p wakeUp runs in the finder's thread when there is something to take for the first time, or
    /// again after take() returned State::Empty; never after stop().
    explicit HitQueue(std::function<void()> wakeUp);

    // For the finder.
    void put(FoundFiles &&hits);
    void end();

    /// Waits that long; returns true as soon as the search is stopped.
    bool isStoppedWithin(int milliseconds);

    // For the reporter.
    State take(FoundFiles &hits);
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
