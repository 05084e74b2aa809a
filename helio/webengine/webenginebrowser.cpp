#include "helio/webengine/webenginebrowser.h"

#include <QChildEvent>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QWebChannel>
#include <QWebEngineProfile>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineView>

#include <cmath>

#include "helio/doctor/doctoroperations.h"
#include "helio/tasks/taskoperations.h"
#include "helio/webengine/drops/droppedfiles.h"
#include "helio/webengine/layers/editmenu.h"
#include "helio/webengine/localpage.h"
#include "helio/webengine/pagenotice.h"
#include "helio/webengine/pagescript.h"
#include "helio/webengine/pagesurroundings.h"
#include "helio/webengine/wire/pagewire.h"
#include "helio/webengine/wire/webenginecontainer.h"
#include "host/kxwebviewasynjsobject.h"

namespace {

constexpr double zoomStep = 1.2;
constexpr int mostLoadsForScript = 3;
/// The pages' background colours, so that a window does not flash before its page has painted.
constexpr QRgb lightGround = 0xfff5f6f8;
constexpr QRgb darkGround = 0xff16181d;

QString textOf(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace

namespace helio {

namespace {

QStringList namesOf(const PageHelpers &helpers)
{
    return (helpers.doctor ? DoctorOperations::names() : QStringList()) +
           (helpers.tasks ? helpers.tasks->names() : QStringList());
}

} // namespace

WebEngineBrowser::WebEngineBrowser(QWebEngineProfile *profile, const PageDirectory &directory,
                                   const PageSurroundings &surroundings, const PageHelpers &helpers,
                                   const PageOperations &operations, KxWebViewCefJsApiFlag flag,
                                   QWidget *parent)
    : KHelioBrowserWidgetBase(parent),
      m_directory(directory),
      m_flag(flag),
      m_layers(this),
      m_view(new QWebEngineView(this)),
      m_ground(new QWidget(this)),
      m_page(new LocalPage(directory, profile, m_view)),
      m_dropped(new DroppedFiles(this)),
      m_notice(new PageNotice(surroundings, this)),
      m_wire(new PageWire([this] { return m_page->isAtHome(); }, this)),
      m_container(new WebEngineContainer(m_wire, this))
{
    m_view->installEventFilter(this);
    m_view->installEventFilter(m_dropped);
    m_view->setPage(m_page);
    // The page's scripts and not the profile's, which are lost when the page crashes.
    if (flag & AsynchronousJsApi)
        addPageScript(m_page->scripts(), directory, surroundings,
                      namesOf(helpers) + withOwn(operations).keys());
    m_wire->setDoctor(helpers.doctor);
    m_wire->setTasks(helpers.tasks);
    m_wire->setOperations(withOwn(operations));
    const QColor ground(surroundings.isDark() ? darkGround : lightGround);
    m_page->setBackgroundColor(ground);
    m_ground->setPalette(QPalette(ground));
    m_ground->setAutoFillBackground(true);
    m_layers.add(m_view);
    m_layers.add(m_ground);
    m_layers.add(m_notice);
    setFocusProxy(m_view);

    connect(m_view, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &place) { showEditMenu(m_view, place); });
    connect(m_page, &QWebEnginePage::loadStarted, this, [this] { m_isLoading = true; });
    connect(m_page, &QWebEnginePage::loadFinished, this, &WebEngineBrowser::finishLoad);
    connect(m_page, &QWebEnginePage::titleChanged, this, &WebEngineBrowser::passTitle);
    connect(m_page, &QWebEnginePage::renderProcessTerminated, this, &WebEngineBrowser::sayStopped);
    connect(m_page, &LocalPage::documentLost, this, &WebEngineBrowser::sayNotShown);
    connect(m_notice, &PageNotice::reloadRequested, this, &WebEngineBrowser::reload);
    connect(m_notice, &PageNotice::closeRequested, this, &WebEngineBrowser::closeRequested);
}

WebEngineBrowser::~WebEngineBrowser() = default;

PageOperations WebEngineBrowser::withOwn(const PageOperations &operations)
{
    PageOperations all = operations;
    if (all.isEmpty())
        return all;
    all.insert(QStringLiteral("window.dropped"),
               [this](const QJsonObject &) { return m_dropped->take(); });
    return all;
}

void WebEngineBrowser::setZoomLevel(int level)
{
    m_view->setZoomFactor(std::pow(zoomStep, level));
}

void WebEngineBrowser::setFeatureEnabled(Feature feature, bool enabled)
{
    switch (feature) {
    case ContextMenu:
        // Without Chromium's menu there still is one to copy and paste.
        m_view->setContextMenuPolicy(enabled ? Qt::DefaultContextMenu : Qt::CustomContextMenu);
        break;
    case FileDrop:
        // Pages take what is dropped on them. What they do not take is not opened in any case:
        // LocalPage refuses it.
        break;
    }
}

void WebEngineBrowser::setFocusOnLoad(bool focus)
{
    m_focusOnLoad = focus;
    m_page->settings()->setAttribute(QWebEngineSettings::FocusOnNavigationEnabled, focus);
}

void WebEngineBrowser::setStartupUrl(const QString &url)
{
    // Other processes load the page while the script object is made. The page's calls arrive after
    // this function has returned.
    if (m_flag & AsynchronousJsApi)
        m_page->setWebChannel(new QWebChannel(m_page));
    m_url = QUrl(url);
    load();
    if (m_flag & AsynchronousJsApi)
        askForApi();
}

void WebEngineBrowser::askWhetherReady(const std::function<void(bool)> &tell)
{
    m_page->askWhetherReady(tell);
}

void WebEngineBrowser::tellPage(const QJsonObject &window)
{
    m_wire->deliver(windowCallback(), textOf({{QStringLiteral("result"), window}}), false);
}

void WebEngineBrowser::nameWayOut(const QString &name)
{
    m_notice->nameWayOut(name);
}

void WebEngineBrowser::closeInPlaceOfPage(const QString &type)
{
    m_wire->addCall({{QStringLiteral("command"), QStringLiteral("closechildwindow")},
                     {QStringLiteral("args"), QJsonObject{{QStringLiteral("type"), type}}}});
}

bool WebEngineBrowser::eventFilter(QObject *watched, QEvent *event)
{
    // Chromium's widget, which receives the keys, may be replaced at any time.
    if (watched == m_view && event->type() == QEvent::ChildAdded) {
        QObject *child = static_cast<QChildEvent *>(event)->child();
        if (child->isWidgetType()) {
            child->installEventFilter(this);
            child->installEventFilter(m_dropped);
        }
    }
    const bool pressed = event->type() == QEvent::KeyPress;
    if (watched != m_view && (pressed || event->type() == QEvent::KeyRelease)) {
        const auto *key = static_cast<QKeyEvent *>(event);
        bool handled = false;
        emit cefKeyEvent(key->modifiers(), key->key(), pressed, handled);
        if (handled)
            return true;
    }
    return KHelioBrowserWidgetBase::eventFilter(watched, event);
}

void WebEngineBrowser::showEvent(QShowEvent *event)
{
    m_wasShown = true;
    KHelioBrowserWidgetBase::showEvent(event);
}

void WebEngineBrowser::askForApi()
{
    QObject *api = nullptr;
    emit creatingApi(m_container, &api);
    m_wire->setApi(qobject_cast<KxWebViewAsynJSObject *>(api));
    m_page->webChannel()->registerObject(QStringLiteral("wire"), m_wire);
}

void WebEngineBrowser::finishLoad(bool ok)
{
    m_isLoading = false;
    if (m_layers.front() == m_ground)
        m_layers.bringForward(m_view);
    // An empty document also finishes, with a notice in front of it.
    if (ok && m_focusOnLoad && m_layers.front() == m_view)
        m_layers.takeFocus();
    if (ok && m_loadsForScript > 0)
        expectScript();
    passTitle();
    emit loadFinished(ok);
}

void WebEngineBrowser::passTitle()
{
    // While a page loads, its title is its address.
    if (!m_isLoading && !m_page->title().isEmpty())
        emit titleChanged(m_page->title());
}

void WebEngineBrowser::sayStopped()
{
    if (m_flag & AsynchronousJsApi)
        m_loadsForScript = mostLoadsForScript;
    m_wire->forgetPage();
    if (m_isAsking) {
        // It had stopped already when it was told.
        m_isAsking = false;
        load();
        return;
    }
    m_layers.bringForward(m_notice->sayStopped());
}

void WebEngineBrowser::sayNotShown()
{
    const bool isInstalled = QFileInfo(m_directory.path()).isDir();
    m_layers.bringForward(isInstalled ? m_notice->sayNotShown(m_url.fileName())
                                      : m_notice->sayRemoved());
}

} // namespace helio
