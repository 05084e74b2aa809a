#pragma once

#include <QByteArray>
#include <QList>
#include <QProcessEnvironment>

#include <sys/types.h>

#include "helio/runtime/processes/descriptor.h"

namespace helio {

/// A running program and what it writes. It is ended when this object goes.
class ProgramOutput
{
public:
    enum class State {
        Output,
        Silent,
        Ended
    };

    /// Starts the program, which is found in PATH.
    ProgramOutput(const QList<QByteArray> &words, const QProcessEnvironment &environment);
    ~ProgramOutput();
    Q_DISABLE_COPY(ProgramOutput)

    bool isStarted() const;

    /// Waits until the program writes or ends, and appends what it wrote to @p output.
    State read(QByteArray *output, int timeoutMs);

    /// Whether it ended with status 0, or with another one and said nothing on standard error.
    /// For a program whose output has ended.
    bool hasSucceeded();

private:
    pid_t m_process = 0;
    Descriptor m_output;
    Descriptor m_errors;
    bool m_hasComplained = false;
};

} // namespace helio
