#include "host/kheliopluginwidgetfactory.h"

#include <algorithm>
#include <vector>

namespace {

std::vector<KHelioPluginWidgetFactoryItemBase *> &registeredItems()
{
    // Never destroyed: static items unregister while the process ends.
    static auto *items = new std::vector<KHelioPluginWidgetFactoryItemBase *>;
    return *items;
}

void forget(KHelioPluginWidgetFactoryItemBase *item)
{
    auto &items = registeredItems();
    items.erase(std::remove(items.begin(), items.end(), item), items.end());
}

template<typename Predicate>
KHelioPluginWidgetFactoryItemBase *latestItem(Predicate matches)
{
    const auto &items = registeredItems();
    const auto found = std::find_if(items.rbegin(), items.rend(), matches);
    return found == items.rend() ? nullptr : *found;
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

void KHelioPluginWidgetFactory::registerPagePlugin(KHelioPluginWidgetFactoryItemBase *item)
{
    forget(item);
    registeredItems().push_back(item);
}

void KHelioPluginWidgetFactory::unregisterPagePlugin(KHelioPluginWidgetFactoryItemBase *item)
{
    forget(item);
}

void KHelioPluginWidgetFactory::unregisterStrPagePlugin(KHelioPluginWidgetFactoryItemBase *item)
{
    forget(item);
}

KHelioPluginWidgetFactoryItemBase *KHelioPluginWidgetFactory::pagePlugin(int type)
{
    return latestItem([type](const KHelioPluginWidgetFactoryItemBase *item) {
        return item->type() == type && type != KHelioPluginWidget::StringType;
    });
}

KHelioPluginWidgetFactoryItemBase *KHelioPluginWidgetFactory::pagePlugin(const QString &strType)
{
    return latestItem([&strType](const KHelioPluginWidgetFactoryItemBase *item) {
        return item->type() == KHelioPluginWidget::StringType && item->strType() == strType;
    });
}
