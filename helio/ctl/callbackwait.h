#pragma once

#include <QObject>
#include <QStringList>

namespace helio {
class HeadlessShell;
}

namespace ctl {

/// Waits for later answers. Callbacks that come while nobody waits are remembered, so that one
/// that came during the command itself is not missed.
class CallbackWait : public QObject
{
    Q_OBJECT

public:
    explicit CallbackWait(helio::HeadlessShell &shell);

    /// Forgets the callbacks so far; to be called before each command.
    void startAfresh();

    /// Processes events until @p callback has come; false when @p timeoutMs ran out first.
    bool waitFor(const QString &callback, int timeoutMs);

    /// Processes events for that time.
    static void processEvents(int durationMs);

signals:
    void arrived();

private:
    bool take(const QString &callback);

    QStringList m_arrived;
};

} // namespace ctl
