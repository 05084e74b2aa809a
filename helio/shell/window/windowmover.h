#pragma once

#include <QObject>
#include <QPoint>

class QWidget;

namespace shell {

/// Moves a frameless window with the mouse while the page's title bar is pressed.
class WindowMover : public QObject
{
    Q_OBJECT

public:
    explicit WindowMover(QWidget *window);

    /// The title bar was pressed. The window manager moves the window; if it cannot, the window
    /// follows the pointer until the button is released.
    void start();

    /// The title bar was released.
    void stop();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_window;
    QPoint m_grip;
    bool m_isFollowing = false;
};

} // namespace shell
