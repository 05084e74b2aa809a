#include "browser.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QVBoxLayout>
#include <QWebChannel>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>

#include <cmath>

namespace {

/// Whoever can call commands can start programs, so nothing else is ever shown.
bool isPage(const QUrl &url)
{
    const QString directory =
        QCoreApplication::applicationDirPath() +
        QStringLiteral("/addons/vyrassistanttool/officeassistant/resource/html/");
    return url.isLocalFile() && QDir::cleanPath(url.toLocalFile()).startsWith(directory);
}

class LocalPage : public QWebEnginePage
{
public:
    using QWebEnginePage::QWebEnginePage;

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType, bool) override
    {
        return isPage(url);
    }
};

/// Where local pages may read files, only those of the pages, and nothing remote.
class PagesOnly : public QWebEngineUrlRequestInterceptor
{
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo &info) override
    {
        const QString scheme = info.requestUrl().scheme();
        const bool isOwnData = scheme == QLatin1String("data") || scheme == QLatin1String("blob");
        info.block(!isOwnData && !isPage(info.requestUrl()));
    }
};

QString textOf(const QString &resource)
{
    QFile file(resource);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s is missing", qPrintable(resource));
    return QString::fromUtf8(file.readAll());
}

QWebEngineScript wireScript(const QPalette &palette)
{
    const bool dark = palette.color(QPalette::Window).lightness() < 128;
    const QString settings =
        QStringLiteral("({ theme: '%1', language: '%2' })")
            .arg(dark ? QStringLiteral("dark") : QStringLiteral("light"), QLocale().name());
    QWebEngineScript script;
    script.setSourceCode(textOf(QStringLiteral(":/qtwebchannel/qwebchannel.js")) +
                         textOf(QStringLiteral(":/examplebrowser/wire.js"))
                             .replace(QStringLiteral("(HELIO_SETTINGS)"), settings));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    return script;
}

} // namespace

Wire::Wire(QWebEngineView *view) : KxWebViewContainer(view), m_view(view) {}

void Wire::runCallback(const QString &callback, const QString &json, bool base64)
{
    if (isPage(m_view->url()))
        Q_EMIT answered(callback, json, base64);
}

void Wire::call(const QString &text)
{
    // Queued: a command may show a dialog, and Chromium waits until this function returns.
    if (api && isPage(m_view->url()))
        api->queueJSAsynCall(text, false);
}

Browser::Browser(QWidget *owner)
    : KHelioBrowserWidgetBase(owner), m_view(new QWebEngineView(this)), m_wire(new Wire(m_view))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    m_view->setPage(new LocalPage(m_view));
    m_view->page()->setUrlRequestInterceptor(new PagesOnly(m_view));
    // Qt 6 refuses a local page its own scripts without it.
    m_view->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls,
                                     QT_VERSION_MAJOR > 5);
    m_view->page()->scripts().insert(wireScript(palette()));
    connect(m_view, &QWebEngineView::loadFinished, this, &Browser::loadFinished);
}

void Browser::setZoomLevel(int level)
{
    m_view->setZoomFactor(std::pow(1.2, level));
}

void Browser::setFeatureEnabled(Feature feature, bool enabled)
{
    if (feature == ContextMenu)
        m_view->setContextMenuPolicy(enabled ? Qt::DefaultContextMenu : Qt::PreventContextMenu);
    else if (feature == FileDrop)
        m_view->setAcceptDrops(enabled);
}

void Browser::setFocusOnLoad(bool focus)
{
    m_view->settings()->setAttribute(QWebEngineSettings::FocusOnNavigationEnabled, focus);
}

void Browser::setStartupUrl(const QString &url)
{
    QObject *api = nullptr;
    Q_EMIT creatingApi(m_wire, &api);
    m_wire->api = qobject_cast<KxWebViewAsynJSObject *>(api);
    auto *channel = new QWebChannel(m_view);
    channel->registerObject(QStringLiteral("wire"), m_wire);
    m_view->page()->setWebChannel(channel);
    navigate(QUrl(url));
}

void Browser::navigate(const QUrl &url)
{
    m_view->load(url);
}

void Browser::closeView()
{
    m_view->page()->runJavaScript(
        QStringLiteral("dispatchEvent(new Event('helioclose', { cancelable: true }))"),
        [wire = QPointer<Wire>(m_wire)](const QVariant &leftToShell) {
            if (wire && leftToShell.toBool())
                wire->call(QStringLiteral(R"({"command":"closechildwindow"})"));
        });
}

void CreateHelioBrowserWidget(QWidget *owner, KHelioBrowserCreator *creator, const QString &,
                              KxWebViewCefJsApiFlag)
{
    Q_EMIT creator->createSucceeded(new Browser(owner));
}
