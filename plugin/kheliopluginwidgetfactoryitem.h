#pragma once

#include <QMetaMethod>

#include "host/kheliopluginwidgetfactory.h"

/// The factory item of the page class @p Widget.
template<typename Widget>
class KHelioPluginWidgetFactoryItem : public KHelioPluginWidgetFactoryItemBase
{
public:
    using KHelioPluginWidgetFactoryItemBase::KHelioPluginWidgetFactoryItemBase;

    KHelioPluginWidget *create(QWidget *parent) override { return new Widget(parent); }

    bool hasMethod(const QString &name) override
    {
        const QMetaObject &metaObject = Widget::staticMetaObject;
        for (int index = 0; index < metaObject.methodCount(); ++index) {
            const QByteArray signature = metaObject.method(index).methodSignature();
            if (QString::fromLatin1(signature.left(signature.indexOf('('))) == name)
                return true;
        }
        return false;
    }

    ~KHelioPluginWidgetFactoryItem() override
    {
        if (type() != KHelioPluginWidget::StringType)
            KHelioPluginWidgetFactory::unregisterPagePlugin(this);
        else if (!strType().isEmpty())
            KHelioPluginWidgetFactory::unregisterStrPagePlugin(this);
    }
};
