#pragma once

#include <QBasicTimer>
#include <QObject>

#include <deque>
#include <functional>

namespace helio {

/// Calls that are made in their order before the event loop waits: never within the event that
/// brought them, and without the turn of the loop that a posted event takes.
class CallQueue : public QObject
{
    Q_OBJECT

public:
    /// For a thread that has an event dispatcher.
    explicit CallQueue(QObject *parent = nullptr);

    /// Makes @p call later.
    void add(std::function<void()> call);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void makeCalls();

    std::deque<std::function<void()>> m_calls;
    /// For a loop that never waits.
    QBasicTimer m_look;
};

} // namespace helio
