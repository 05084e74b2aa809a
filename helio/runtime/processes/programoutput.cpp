#include "helio/runtime/processes/programoutput.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>

#include <fcntl.h>
#include <poll.h>

#include "helio/runtime/processes/spawn.h"

namespace helio {

namespace {

/// How long a program may take to exit after it has closed its output.
constexpr int longestExitMs = 1000;

struct Pipe
{
    Descriptor reading;
    Descriptor writing;
};

Pipe makePipe()
{
    std::array<int, 2> ends = {-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return Pipe();
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// Appends what can be read to @p text and returns its length. At the end of the input, closes the
/// descriptor and returns 0.
int readPiece(Descriptor &descriptor, QByteArray &text)
{
    std::array<char, 65536> piece;
    ssize_t count = 0;
    do {
        count = ::read(descriptor.number(), piece.data(), piece.size());
    } while (count < 0 && errno == EINTR);
    const int length = count > 0 ? static_cast<int>(count) : 0;
    text.append(piece.data(), length);
    if (length == 0)
        descriptor.close();
    return length;
}

} // namespace

ProgramOutput::ProgramOutput(const QList<QByteArray> &words, const QProcessEnvironment &environment)
{
    const Descriptor input(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    Pipe output = makePipe();
    Pipe errors = makePipe();
    if (!input.isOpen() || !output.writing.isOpen() || !errors.writing.isOpen())
        return;
    const std::optional<pid_t> process = spawnProgram(words, environment,
                                                      {{input.number(), STDIN_FILENO},
                                                       {output.writing.number(), STDOUT_FILENO},
                                                       {errors.writing.number(), STDERR_FILENO}});
    if (!process)
        return;
    m_process = *process;
    m_output = std::move(output.reading);
    m_errors = std::move(errors.reading);
}

ProgramOutput::~ProgramOutput()
{
    if (m_process <= 0)
        return;
    ::kill(m_process, SIGKILL);
    awaitProgram(m_process);
}

bool ProgramOutput::isStarted() const
{
    return m_process > 0;
}

ProgramOutput::State ProgramOutput::read(QByteArray &output, int timeoutMs)
{
    std::array<pollfd, 2> sources = {pollfd{m_output.number(), POLLIN, 0},
                                     pollfd{m_errors.number(), POLLIN, 0}};
    // poll() skips closed sources: their number is negative.
    if (::poll(sources.data(), sources.size(), timeoutMs) <= 0)
        return State::Silent;
    if (sources[1].revents != 0) {
        QByteArray message;
        m_hasErrors = readPiece(m_errors, message) > 0 || m_hasErrors;
    }
    if (sources[0].revents != 0 && readPiece(m_output, output) > 0)
        return State::Output;
    return m_output.isOpen() || m_errors.isOpen() ? State::Silent : State::Ended;
}

bool ProgramOutput::hasSucceeded()
{
    const std::optional<int> status = awaitProgram(m_process, longestExitMs);
    m_process = 0;
    if (!status || *status > 0)
        return !m_hasErrors;
    return *status == 0;
}

} // namespace helio
