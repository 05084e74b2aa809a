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
    // Registered here, in the library that stays, and not only by a plug-in that may be unloaded.
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
