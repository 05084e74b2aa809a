#include "helio/shell/window/windowmover.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

namespace shell {

WindowMover::WindowMover(QWidget *window) : QObject(window), m_window(window) {}

void WindowMover::start()
{
    // The page's command arrives a moment after the press. If the button has been released since,
    // the window would stick to the pointer.
    if (!(QGuiApplication::mouseButtons() & Qt::LeftButton) || m_isFollowing)
        return;
    if (m_window->windowHandle() && m_window->windowHandle()->startSystemMove())
        return;
    m_grip = QCursor::pos() - m_window->pos();
    m_isFollowing = true;
    QCoreApplication::instance()->installEventFilter(this);
}

void WindowMover::stop()
{
    if (!m_isFollowing)
        return;
    m_isFollowing = false;
    QCoreApplication::instance()->removeEventFilter(this);
}

bool WindowMover::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseMove)
        m_window->move(QCursor::pos() - m_grip);
    else if (event->type() == QEvent::MouseButtonRelease)
        stop();
    return QObject::eventFilter(watched, event);
}

} // namespace shell
