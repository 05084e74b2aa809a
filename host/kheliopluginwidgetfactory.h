#pragma once

#include <QString>

#include "host/khelioexport.h"
#include "host/kheliopluginwidget.h"

/// Makes the pages of one kind. A plug-in registers one static item a kind when it is loaded.
///
/// The order of the virtual operations is part of the border between shell and plug-in.
class HELIO_EXPORT KHelioPluginWidgetFactoryItemBase
{
public:
    explicit KHelioPluginWidgetFactoryItemBase(KHelioPluginWidget::WidgetType type);
    explicit KHelioPluginWidgetFactoryItemBase(const QString &strType);

    /// A new page on @p parent, which owns it.
    virtual KHelioPluginWidget *create(QWidget *parent) = 0;

    /// Whether the page's class, or a class that it inherits, has a method called @p name
    /// (without parentheses, case-sensitive).
    virtual bool hasMethod(const QString &name) = 0;

    virtual ~KHelioPluginWidgetFactoryItemBase();

    /// The registered number; KHelioPluginWidget::StringType for an item with a type string.
    int type() const;

    /// The registered type string; empty for an item with a number.
    QString strType() const;

private:
    Q_DISABLE_COPY_MOVE(KHelioPluginWidgetFactoryItemBase)

    int m_type;
    QString m_strType;
};

// Plug-ins derive from it.
static_assert(sizeof(KHelioPluginWidgetFactoryItemBase) == 2 * sizeof(void *) + sizeof(QString),
              "the size is part of the border");

/// The shell's register of page kinds. Items belong to the plug-in that registered them.
/// A later item of the same kind takes precedence while it is registered.
class HELIO_EXPORT KHelioPluginWidgetFactory
{
public:
    static void registerPagePlugin(KHelioPluginWidgetFactoryItemBase *item);

    /// Forgets an item registered by number; unknown items are ignored.
    static void unregisterPagePlugin(KHelioPluginWidgetFactoryItemBase *item);

    /// Forgets an item registered by type string; unknown items are ignored.
    static void unregisterStrPagePlugin(KHelioPluginWidgetFactoryItemBase *item);

    /// The item of that number, or null.
    static KHelioPluginWidgetFactoryItemBase *pagePlugin(int type);

    /// The item of that type string, or null.
    static KHelioPluginWidgetFactoryItemBase *pagePlugin(const QString &strType);
};
