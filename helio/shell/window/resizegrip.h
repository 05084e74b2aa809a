#pragma once

#include <QWidget>

namespace shell {

/// An invisible strip along an edge, or in a corner, by which a frameless window is resized. It
/// lies over the page and follows its window.
class ResizeGrip : public QWidget
{
    Q_OBJECT

public:
    ResizeGrip(Qt::Edges edges, QWidget *window);

    /// One grip for each edge and corner of @p window.
    static void addTo(QWidget *window);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    void place();

    Qt::Edges m_edges;
};

} // namespace shell
