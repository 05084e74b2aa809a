#pragma once

namespace testsupport {

/// A pipe that every process started after it holds open, whoever starts it: it tells when they are
/// all gone, however slow the machine is.
class Lifeline
{
public:
    Lifeline();
    ~Lifeline();

    Lifeline(const Lifeline &) = delete;
    Lifeline &operator=(const Lifeline &) = delete;

    /// The end that the processes hold, to write to.
    int descriptor() const { return m_held; }

    /// Whether one of them has written something, or does within the longest wait.
    bool hasSign();

    /// Whether all of them have ended, or do within the longest wait. From here on the processes
    /// that are started no longer count.
    bool areAllGone();

private:
    int m_watched = -1;
    int m_held = -1;
};

} // namespace testsupport
