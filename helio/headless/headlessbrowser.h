#pragma once

#include "host/kheliobrowser.h"
#include "host/kxwebviewcontainer.h"

class KxWebViewAsynJSObject;

namespace helio {

/// A container without JavaScript: a call of a page's function becomes a signal.
class HeadlessContainer : public KxWebViewContainer
{
    Q_OBJECT

public:
    using KxWebViewContainer::KxWebViewContainer;

    void runCallback(const QString &callback, const QString &json, bool base64) override;

signals:
    void callbackCalled(const QString &callback, const QString &json, bool base64);
};

/// A browser that shows nothing and loads every page at once.
class HeadlessBrowser : public KHelioBrowserWidgetBase
{
    Q_OBJECT

public:
    explicit HeadlessBrowser(QWidget *parent);

    void setZoomLevel(int level) override;
    void setFeatureEnabled(Feature feature, bool enabled) override;
    void setFocusOnLoad(bool focus) override;
    void setStartupUrl(const QString &url) override;
    void navigate(const QUrl &url) override;

    /// The owner's script object; null before the first page.
    KxWebViewAsynJSObject *api() const;
    HeadlessContainer *container();

private:
    HeadlessContainer m_container;
    KxWebViewAsynJSObject *m_api = nullptr;
};

} // namespace helio
