#pragma once

#include <QObject>

#include <functional>
#include <thread>

#include "host/khelioexport.h"

namespace helio {

/// Ends the program in order on SIGTERM, SIGINT or SIGHUP, also while a command blocks the main
/// thread: it ends what the command waits for. A second signal ends the program at once. Only one
/// object may exist.
class HELIO_EXPORT TerminationSignals : public QObject
{
    Q_OBJECT

public:
    /// @p endPrograms sends a signal to the programs to end: from the first signal on again and
    /// again, in a thread of its own, first SIGTERM and after a second SIGKILL. If the reader of
    /// the descriptor @p consumer goes, that counts as SIGPIPE.
    explicit TerminationSignals(std::function<void(int signal)> endPrograms, int consumer = -1);
    ~TerminationSignals() override;

    /// The first signal; 0 if none has come.
    static int first();

signals:
    /// The first signal has come. Emitted in the thread of its own.
    void received();

private:
    void watch();
    void endInOrder();
    int nextSignal(int timeoutMs);

    std::function<void(int)> m_endPrograms;
    int m_consumer;
    std::thread m_watcher;
};

/// The name of that thread.
constexpr char signalThread[] = "signals";

} // namespace helio
