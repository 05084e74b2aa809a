#pragma once

#include <QObject>

#include "host/khelioexport.h"

class QWidget;

/// Draws the frame of a window that has none from the window manager. Owned by its widget.
class HELIO_EXPORT KLiteLinuxShadowBorder : public QObject
{
    Q_OBJECT

public:
    /// A border for @p widget; without @p visible it is kept but not drawn.
    KLiteLinuxShadowBorder(QWidget *widget, bool visible);
    ~KLiteLinuxShadowBorder() override;

    /// Draws the border; to be called from the widget's paintEvent().
    void paintShadowBorder();

private:
    QWidget *m_widget;
    bool m_visible;
};

// Plug-ins allocate it.
static_assert(sizeof(KLiteLinuxShadowBorder) == sizeof(QObject) + 2 * sizeof(void *),
              "the size is part of the border");
