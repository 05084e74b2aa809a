#include "helio/shell/window/resizegrip.h"

#include <QEvent>
#include <QMouseEvent>
#include <QWindow>

namespace {

constexpr int edgeWidth = 4;
constexpr int cornerWidth = 10;

Qt::CursorShape cursorOf(Qt::Edges edges)
{
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge))
        return Qt::SizeBDiagCursor;
    const bool isUpright = edges.testFlag(Qt::LeftEdge) || edges.testFlag(Qt::RightEdge);
    return isUpright ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

bool isCorner(Qt::Edges edges)
{
    const bool isAtSide = edges.testFlag(Qt::LeftEdge) || edges.testFlag(Qt::RightEdge);
    return isAtSide && (edges.testFlag(Qt::TopEdge) || edges.testFlag(Qt::BottomEdge));
}

} // namespace

namespace shell {

ResizeGrip::ResizeGrip(Qt::Edges edges, QWidget *window) : QWidget(window), m_edges(edges)
{
    setCursor(cursorOf(edges));
    window->installEventFilter(this);
    place();
}

void ResizeGrip::addTo(QWidget *window)
{
    for (const Qt::Edges edges :
         {Qt::Edges(Qt::LeftEdge), Qt::Edges(Qt::RightEdge), Qt::Edges(Qt::TopEdge),
          Qt::Edges(Qt::BottomEdge), Qt::LeftEdge | Qt::TopEdge, Qt::RightEdge | Qt::TopEdge,
          Qt::LeftEdge | Qt::BottomEdge, Qt::RightEdge | Qt::BottomEdge})
        new ResizeGrip(edges, window);
}

bool ResizeGrip::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::WindowStateChange)
        place();
    return QWidget::eventFilter(watched, event);
}

void ResizeGrip::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && window()->windowHandle())
        window()->windowHandle()->startSystemResize(m_edges);
}

void ResizeGrip::place()
{
    const QWidget *around = parentWidget();
    const int width = isCorner(m_edges) ? cornerWidth : edgeWidth;
    QRect area = around->rect();
    if (m_edges.testFlag(Qt::LeftEdge))
        area.setRight(width - 1);
    if (m_edges.testFlag(Qt::RightEdge))
        area.setLeft(area.right() - width + 1);
    if (m_edges.testFlag(Qt::TopEdge))
        area.setBottom(width - 1);
    if (m_edges.testFlag(Qt::BottomEdge))
        area.setTop(area.bottom() - width + 1);
    // Grips that overlapped would lie over each other in the order in which Qt filters events.
    if (!isCorner(m_edges)) {
        const bool isUpright = area.width() == width;
        area = isUpright ? area.adjusted(0, cornerWidth, 0, -cornerWidth)
                         : area.adjusted(cornerWidth, 0, -cornerWidth, 0);
    }
    setGeometry(area);
    setVisible(!(around->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)));
    raise();
}

} // namespace shell
