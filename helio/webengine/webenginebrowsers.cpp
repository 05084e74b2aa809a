#include "helio/webengine/webenginebrowsers.h"

#include <QWebEngineProfile>
#include <QWebEngineSettings>

#include "helio/runtime/border/browsermaker.h"
#include "helio/webengine/requestguard.h"
#include "helio/webengine/webenginebrowser.h"
#include "qtversion/qtversion.h"

namespace {

/// What local pages without network access do not need.
constexpr QWebEngineSettings::WebAttribute unneededAttributes[] = {
    QWebEngineSettings::LocalContentCanAccessRemoteUrls,
    QWebEngineSettings::JavascriptCanOpenWindows,
    QWebEngineSettings::JavascriptCanAccessClipboard,
    QWebEngineSettings::JavascriptCanPaste,
    QWebEngineSettings::AllowWindowActivationFromJavaScript,
    QWebEngineSettings::HyperlinkAuditingEnabled,
    QWebEngineSettings::ErrorPageEnabled,
    QWebEngineSettings::PluginsEnabled,
    QWebEngineSettings::PdfViewerEnabled,
    QWebEngineSettings::FullScreenSupportEnabled,
    QWebEngineSettings::ScreenCaptureEnabled,
    QWebEngineSettings::WebGLEnabled,
    QWebEngineSettings::AutoLoadIconsForPage,
    QWebEngineSettings::AllowRunningInsecureContent,
    QWebEngineSettings::AllowGeolocationOnInsecureOrigins,
    QWebEngineSettings::DnsPrefetchEnabled,
};

void restrict(QWebEngineSettings &settings)
{
    for (const QWebEngineSettings::WebAttribute attribute : unneededAttributes)
        settings.setAttribute(attribute, false);
    // Where it is on, the guard of requests still refuses every file outside the page directory.
    settings.setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls,
                          qtversion::localPagesNeedFileAccess);
    settings.setAttribute(QWebEngineSettings::WebRTCPublicInterfacesOnly, true);
    settings.setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
}

} // namespace

namespace helio {

WebEngineBrowsers::WebEngineBrowsers(const PageDirectory &directory,
                                     const PageSurroundings &surroundings,
                                     const QString &storageDirectory, const PageHelpers &helpers,
                                     PageOperations operations)
    : m_directory(directory),
      m_surroundings(surroundings),
      m_helpers(helpers),
      m_operations(std::move(operations)),
      m_guard(std::make_unique<RequestGuard>(directory)),
      m_profile(std::make_unique<QWebEngineProfile>(QStringLiteral("office-assistant")))
{
    m_profile->setPersistentStoragePath(storageDirectory);
    m_profile->setCachePath(storageDirectory);
    m_profile->setHttpCacheType(QWebEngineProfile::NoCache);
    m_profile->setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    m_profile->setUrlRequestInterceptor(m_guard.get());
    m_profile->setSpellCheckEnabled(false);
    restrict(*m_profile->settings());
    QObject::connect(m_profile.get(), &QWebEngineProfile::downloadRequested,
                     [](qtversion::Download *item) { item->cancel(); });
    setBrowserMaker(
        [this](QWidget *owner, KxWebViewCefJsApiFlag flag) { return make(owner, flag); });
}

WebEngineBrowsers::~WebEngineBrowsers()
{
    setBrowserMaker({});
}

KHelioBrowserWidgetBase *WebEngineBrowsers::make(QWidget *owner, KxWebViewCefJsApiFlag flag)
{
    return new WebEngineBrowser(m_profile.get(), m_directory, m_surroundings, m_helpers,
                                m_operations, flag, owner);
}

} // namespace helio
