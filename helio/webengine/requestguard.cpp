#include "helio/webengine/requestguard.h"

namespace {

/// Whether a page made the data itself.
bool isMadeByPage(const QUrl &url)
{
    return url.scheme() == QLatin1String("data") || url.scheme() == QLatin1String("blob");
}

} // namespace

namespace helio {

RequestGuard::RequestGuard(const PageDirectory &directory, QObject *parent)
    : QWebEngineUrlRequestInterceptor(parent), m_directory(directory)
{
}

void RequestGuard::interceptRequest(QWebEngineUrlRequestInfo &info)
{
    const QUrl url = info.requestUrl();
    if (!isMadeByPage(url) && !m_directory.contains(url))
        info.block(true);
}

} // namespace helio
