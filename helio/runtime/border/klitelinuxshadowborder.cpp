#include "host/klitelinuxshadowborder.h"

#include <QPainter>
#include <QPalette>
#include <QWidget>

KLiteLinuxShadowBorder::KLiteLinuxShadowBorder(QWidget *widget, bool visible)
    : QObject(widget), m_widget(widget), m_visible(visible)
{
}

KLiteLinuxShadowBorder::~KLiteLinuxShadowBorder() = default;

void KLiteLinuxShadowBorder::paintShadowBorder()
{
    if (!m_visible)
        return;
    QPainter painter(m_widget);
    painter.setPen(m_widget->palette().color(QPalette::Mid));
    painter.drawRect(m_widget->rect().adjusted(0, 0, -1, -1));
}
