#pragma once

#include <QByteArray>
#include <QList>
#include <QProcessEnvironment>

#include <sys/types.h>

#include "helio/runtime/processes/descriptor.h"

namespace helio {

/// A running program and its output. The destructor kills the program.
class ProgramOutput
{
public:
    enum class State {
        Output,
        Silent,
        Ended
    };

    /// Starts the program words[0], which is looked up in PATH.
    ProgramOutput(const QList<QByteArray> &words, const QProcessEnvironment &environment);
    ~ProgramOutput();
    Q_DISABLE_COPY(ProgramOutput)

    bool isStarted() const;

    /// Waits until the program writes or ends, and appends what it wrote to @p output. "Silent"
    /// after @p timeoutMs, or if it wrote to standard error only.
    State read(QByteArray &output, int timeoutMs);

    /// Whether the program ended with status 0, or with another status and no word on standard
    /// error, as plocate does when nothing matches. Call it once, after State::Ended.
    bool hasSucceeded();

private:
    pid_t m_process = 0;
    Descriptor m_output;
    Descriptor m_errors;
    bool m_hasErrors = false;
};

} // namespace helio
