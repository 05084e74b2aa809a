#include "helio/webengine/wire/callqueue.h"

#include <QAbstractEventDispatcher>
#include <QPointer>

namespace {

constexpr int lookMs = 50;

} // namespace

namespace helio {

CallQueue::CallQueue(QObject *parent) : QObject(parent)
{
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &CallQueue::makeCalls);
}

void CallQueue::add(std::function<void()> call)
{
    m_calls.push_back(std::move(call));
    // Goes on while there are calls: to start it for each would take as long as what is saved.
    if (!m_look.isActive())
        m_look.start(lookMs, this);
}

void CallQueue::timerEvent(QTimerEvent *)
{
    if (m_calls.empty())
        m_look.stop();
    else
        makeCalls();
}

void CallQueue::makeCalls()
{
    // A call may run a loop of its own, which makes the calls after it, and in which this may end.
    const QPointer<CallQueue> alive(this);
    while (alive && !m_calls.empty()) {
        const std::function<void()> call = std::move(m_calls.front());
        m_calls.pop_front();
        call();
    }
}

} // namespace helio
