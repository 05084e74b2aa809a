#include "helio/headless/headlessbrowser.h"

#include "host/kxwebviewasynjsobject.h"

namespace helio {

void HeadlessContainer::runCallback(const QString &callback, const QString &json, bool base64)
{
    emit callbackCalled(callback, json, base64);
}

HeadlessBrowser::HeadlessBrowser(QWidget *parent) : KHelioBrowserWidgetBase(parent) {}

void HeadlessBrowser::setZoomLevel(int) {}

void HeadlessBrowser::setFeatureEnabled(Feature, bool) {}

void HeadlessBrowser::setFocusOnLoad(bool) {}

void HeadlessBrowser::setStartupUrl(const QString &url)
{
    QObject *api = nullptr;
    emit creatingApi(&m_container, &api);
    m_api = qobject_cast<KxWebViewAsynJSObject *>(api);
    navigate(QUrl(url));
}

void HeadlessBrowser::navigate(const QUrl &)
{
    emit loadFinished(true);
}

KxWebViewAsynJSObject *HeadlessBrowser::api() const
{
    return m_api;
}

HeadlessContainer *HeadlessBrowser::container()
{
    return &m_container;
}

} // namespace helio
