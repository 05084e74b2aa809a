#pragma once

#include <QObject>
#include <QStringList>

namespace helio {
class HeadlessShell;
}

namespace ctl {

/// Waits for later answers. Remembers callbacks that arrive while nobody waits, so that one that
/// arrives during the command itself is not missed.
class CallbackWait : public QObject
{
    Q_OBJECT

public:
    explicit CallbackWait(helio::HeadlessShell &shell);

    /// Forgets the callbacks so far. Call it before each command.
    void startAfresh();

    /// Processes events until @p callback arrives; false if @p timeoutMs passes first.
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
