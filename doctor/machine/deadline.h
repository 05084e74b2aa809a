#pragma once

#include <algorithm>
#include <chrono>

namespace doctor {

/// The time at which work has to be over.
class Deadline
{
public:
    explicit Deadline(std::chrono::milliseconds limit) : m_end(Clock::now() + limit) {}

    bool isOver() const { return Clock::now() >= m_end; }
    std::chrono::milliseconds left() const
    {
        return std::max(
            std::chrono::milliseconds(0),
            std::chrono::duration_cast<std::chrono::milliseconds>(m_end - Clock::now()));
    }
    /// The earlier of this one and @p limit from now on.
    Deadline atMost(std::chrono::milliseconds limit) const
    {
        return Deadline(std::min(limit, left()));
    }

private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point m_end;
};

} // namespace doctor
