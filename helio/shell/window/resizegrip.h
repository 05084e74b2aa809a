#pragma once

#include <QWidget>

namespace shell {

/// An invisible area along an edge or in a corner of a frameless window, above the page, where the
/// window can be resized.
class ResizeGrip : public QWidget
{
    Q_OBJECT

public:
    ResizeGrip(Qt::Edges edges, QWidget *window);

    /// Adds a grip to each edge and corner of @p window.
    static void addTo(QWidget *window);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    void place();

    Qt::Edges m_edges;
};

} // namespace shell
