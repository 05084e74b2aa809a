#include "helio/webengine/layers/pagelayers.h"

#include <QApplication>
#include <QStackedLayout>
#include <QWidget>

namespace helio {

PageLayers::PageLayers(QWidget *place) : m_place(place), m_layout(new QStackedLayout(place)) {}

void PageLayers::add(QWidget *layer)
{
    m_layout->addWidget(layer);
}

QWidget *PageLayers::front() const
{
    return m_layout->currentWidget();
}

void PageLayers::bringForward(QWidget *layer)
{
    const bool takesFocus = mayTakeFocus();
    m_place->setFocusProxy(layer);
    m_layout->setCurrentWidget(layer);
    if (takesFocus)
        layer->setFocus();
}

void PageLayers::takeFocus() const
{
    if (mayTakeFocus())
        front()->setFocus();
}

bool PageLayers::mayTakeFocus() const
{
    const QWidget *focused = QApplication::focusWidget();
    return m_place->isVisible() && m_place->isActiveWindow() &&
           (!focused || m_place->isAncestorOf(focused));
}

} // namespace helio
