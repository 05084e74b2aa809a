#include "helio/ctl/callbackwait.h"

#include <QEventLoop>
#include <QTimer>

#include "helio/headless/headlessshell.h"

namespace ctl {

CallbackWait::CallbackWait(helio::HeadlessShell &shell)
{
    connect(&shell, &helio::HeadlessShell::callbackCalled, this,
            [this](const QString &, const QString &callback) {
                m_arrived.append(callback);
                emit arrived();
            });
}

void CallbackWait::startAfresh()
{
    m_arrived.clear();
}

bool CallbackWait::waitFor(const QString &callback, int timeoutMs)
{
    bool came = take(callback);
    QEventLoop loop;
    QTimer timeout;
    timeout.setSingleShot(true);
    connect(&timeout, &QTimer::timeout, &loop, &QEventLoop::quit);
    connect(this, &CallbackWait::arrived, &loop, [&] {
        // Checks the last one only: a search may report a hundred thousand hits.
        if (came || m_arrived.constLast() != callback)
            return;
        came = true;
        m_arrived.clear();
        loop.quit();
    });
    if (!came) {
        timeout.start(timeoutMs);
        loop.exec();
    }
    return came;
}

void CallbackWait::processEvents(int durationMs)
{
    QEventLoop loop;
    QTimer::singleShot(durationMs, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

bool CallbackWait::take(const QString &callback)
{
    const int position = m_arrived.indexOf(callback);
    if (position < 0)
        return false;
    m_arrived.erase(m_arrived.begin(), m_arrived.begin() + position + 1);
    return true;
}

} // namespace ctl
