#include "host/kheliobrowser.h"

#include "helio/runtime/border/browsermaker.h"

namespace {

helio::BrowserMaker &installedMaker()
{
    static helio::BrowserMaker maker;
    return maker;
}

} // namespace

void helio::setBrowserMaker(BrowserMaker maker)
{
    // Registered by this library, which stays loaded; a plug-in may be unloaded.
    qRegisterMetaType<KHelioBrowserWidgetBase *>();
    qRegisterMetaType<KxWebViewContainer *>();
    installedMaker() = std::move(maker);
}

KHelioBrowserWidgetBase::KHelioBrowserWidgetBase(QWidget *parent) : QWidget(parent) {}

KHelioBrowserWidgetBase::~KHelioBrowserWidgetBase() = default;

KHelioBrowserCreator::KHelioBrowserCreator(QObject *parent) : QObject(parent) {}

KHelioBrowserCreator::~KHelioBrowserCreator() = default;

void CreateHelioBrowserWidget(QWidget *owner, KHelioBrowserCreator *creator, const QString &name,
                              KxWebViewCefJsApiFlag flag)
{
    if (!installedMaker())
        return;
    KHelioBrowserWidgetBase *browser = installedMaker()(owner, flag);
    if (!browser)
        return;
    browser->setObjectName(name);
    emit creator->createSucceeded(browser);
}
