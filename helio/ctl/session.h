#pragma once

#include <QObject>
#include <QSocketNotifier>

#include "helio/ctl/callbackwait.h"
#include "helio/ctl/linebuffer.h"

namespace ctl {

class EventPrinter;
struct SessionRequest;

/// Reads requests and carries them out one after the other.
class Session : public QObject
{
    Q_OBJECT

public:
    /// Reads from the file descriptor @p input.
    Session(helio::HeadlessShell &shell, const EventPrinter &printer, int input);

signals:
    /// The input has ended and all requests have been carried out.
    void ended();

private:
    void readInput();
    void carryOutLines();
    void carryOut(const SessionRequest &request);
    void sendCommand(const SessionRequest &request);

    helio::HeadlessShell &m_shell;
    const EventPrinter &m_printer;
    CallbackWait m_callbacks;
    int m_descriptor;
    QSocketNotifier m_input;
    LineBuffer m_unread;
};

} // namespace ctl
