// Pages, their register and their frame.
#include <QPainter>

#include "host/kheliobrowser.h"
#include "host/kheliopluginwidgetfactory.h"
#include "host/klitelinuxshadowborder.h"

namespace {

/// Items by number or type string. Never destroyed: items unregister while the process ends.
QHash<QString, KHelioPluginWidgetFactoryItemBase *> &items()
{
    static auto *all = new QHash<QString, KHelioPluginWidgetFactoryItemBase *>;
    return *all;
}

} // namespace

KHelioPluginWidgetFactoryItemBase::KHelioPluginWidgetFactoryItemBase(
    KHelioPluginWidget::WidgetType type)
    : m_type(type)
{
}
KHelioPluginWidgetFactoryItemBase::KHelioPluginWidgetFactoryItemBase(const QString &strType)
    : m_type(KHelioPluginWidget::StringType), m_strType(strType)
{
}
KHelioPluginWidgetFactoryItemBase::~KHelioPluginWidgetFactoryItemBase() = default;
int KHelioPluginWidgetFactoryItemBase::type() const
{
    return m_type;
}
QString KHelioPluginWidgetFactoryItemBase::strType() const
{
    return m_strType;
}

// Called before main() if the program is linked with the plug-in, so without an application object.
void KHelioPluginWidgetFactory::registerPagePlugin(KHelioPluginWidgetFactoryItemBase *item)
{
    const bool named = item->type() == KHelioPluginWidget::StringType;
    items().insert(named ? item->strType() : QString::number(item->type()), item);
}
void KHelioPluginWidgetFactory::unregisterPagePlugin(KHelioPluginWidgetFactoryItemBase *item)
{
    items().remove(items().key(item));
}
void KHelioPluginWidgetFactory::unregisterStrPagePlugin(KHelioPluginWidgetFactoryItemBase *item)
{
    items().remove(items().key(item));
}
KHelioPluginWidgetFactoryItemBase *KHelioPluginWidgetFactory::pagePlugin(int type)
{
    return items().value(QString::number(type));
}
KHelioPluginWidgetFactoryItemBase *KHelioPluginWidgetFactory::pagePlugin(const QString &strType)
{
    return items().value(strType);
}

KHelioPluginWidget::KHelioPluginWidget(QWidget *parent) : QWidget(parent) {}
KHelioPluginWidget::~KHelioPluginWidget() = default;
void KHelioPluginWidget::retranslate() {}

KHelioBrowserWidgetBase::KHelioBrowserWidgetBase(QWidget *parent) : QWidget(parent) {}
KHelioBrowserWidgetBase::~KHelioBrowserWidgetBase() = default;
KHelioBrowserCreator::KHelioBrowserCreator(QObject *parent) : QObject(parent) {}
KHelioBrowserCreator::~KHelioBrowserCreator() = default;

KLiteLinuxShadowBorder::KLiteLinuxShadowBorder(QWidget *widget, bool visible)
    : QObject(widget), m_widget(widget), m_visible(visible)
{
}
KLiteLinuxShadowBorder::~KLiteLinuxShadowBorder() = default;
void KLiteLinuxShadowBorder::paintShadowBorder()
{
    if (m_visible)
        QPainter(m_widget).drawRect(m_widget->rect().adjusted(0, 0, -1, -1));
}
