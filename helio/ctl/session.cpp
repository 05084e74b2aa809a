#include "helio/ctl/session.h"

#include <array>
#include <cerrno>

#include <unistd.h>

#include "helio/ctl/eventprinter.h"
#include "helio/ctl/sessionrequest.h"
#include "helio/headless/dialoganswers.h"
#include "helio/headless/headlesspage.h"
#include "helio/headless/headlessshell.h"
#include "helio/runtime/processes/terminationsignals.h"

namespace {

constexpr int longestLine = 256 * 1024 * 1024;
constexpr char tooLong[] = "a request has 256 MiB at most";

} // namespace

namespace ctl {

Session::Session(helio::HeadlessShell &shell, const EventPrinter &printer, int input)
    : m_shell(shell),
      m_printer(printer),
      m_callbacks(shell),
      m_descriptor(input),
      m_input(input, QSocketNotifier::Read),
      m_unread(longestLine)
{
    connect(&m_input, &QSocketNotifier::activated, this, &Session::readInput);
}

void Session::readInput()
{
    std::array<char, 65536> buffer;
    const ssize_t count = ::read(m_descriptor, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    // Further requests wait, even if this one runs an event loop.
    m_input.setEnabled(false);
    if (count <= 0) {
        if (m_unread.isInLine())
            m_unread.append("\n", 1);
        carryOutLines();
        emit ended();
        return;
    }
    m_unread.append(buffer.data(), static_cast<int>(count));
    carryOutLines();
    m_input.setEnabled(true);
}

void Session::carryOutLines()
{
    while (helio::TerminationSignals::first() == 0) {
        const std::optional<LineBuffer::Line> line = m_unread.takeLine();
        if (!line)
            return;
        if (line->isTooLong)
            m_printer.printError({}, QLatin1String(tooLong));
        else if (!line->text.trimmed().isEmpty())
            carryOut(parseSessionRequest(line->text.trimmed()));
    }
}

void Session::carryOut(const SessionRequest &request)
{
    switch (request.kind) {
    case SessionRequest::Command:
        sendCommand(request);
        break;
    case SessionRequest::Wait:
        CallbackWait::processEvents(request.durationMs);
        m_printer.printWaited(false);
        break;
    case SessionRequest::Until:
        m_printer.printWaited(!m_callbacks.waitFor(request.callback, request.durationMs));
        break;
    case SessionRequest::Faulty:
        m_printer.printError(request.id, request.fault);
        break;
    }
}

void Session::sendCommand(const SessionRequest &request)
{
    m_callbacks.startAfresh();
    helio::DialogAnswers::instance().setChoices(request.choices);
    const QJsonObject envelope = m_shell.page(request.page)->call(request.command, request.args);
    const auto error = envelope.constFind(QLatin1String("error"));
    if (error != envelope.constEnd())
        m_printer.printError(request.id, error->toString());
    else
        m_printer.printAnswer(request.id, request.page, request.command, envelope);
}

} // namespace ctl
