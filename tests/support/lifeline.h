#pragma once

namespace testsupport {

/// A pipe that all processes started after it inherit: its end of file tells when they have all
/// ended.
class Lifeline
{
public:
    Lifeline();
    ~Lifeline();

    Lifeline(const Lifeline &) = delete;
    Lifeline &operator=(const Lifeline &) = delete;

    /// The processes' end of the pipe, to write to.
    int descriptor() const { return m_held; }

    /// Waits until a process has written something; false if none did in time.
    bool hasSign();

    /// Waits until all processes have ended; false if some did not in time. Processes started after
    /// this call do not count.
    bool areAllGone();

private:
    int m_watched = -1;
    int m_held = -1;
};

} // namespace testsupport
