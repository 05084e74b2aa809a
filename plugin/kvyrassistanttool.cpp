#include "plugin/kvyrassistanttool.h"

#include <QUrl>
#include <QVBoxLayout>

#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "bridge/pagefile.h"
#include "host/klitelinuxshadowborder.h"

KVyrAssistantTool::KVyrAssistantTool(QWidget *parent) : KHelioPluginWidget(parent)
{
    // The shell may connect by signature or queued.
    qRegisterMetaType<KHelioBrowserWidgetBase *>();
    qRegisterMetaType<KxWebViewContainer *>();
    if (parent) {
        m_widgetType = parent->property("widgettype").toString();
        const QString htmlPath = parent->property("htmlpath").toString();
        if (!htmlPath.isEmpty())
            m_page = htmlPath;
    }
    connect(&m_creator, &KHelioBrowserCreator::createSucceeded, this,
            &KVyrAssistantTool::onCreateSucceeded);
    CreateHelioBrowserWidget(this, &m_creator, QStringLiteral("kheliooffice_assiwidget"),
                             AsynchronousJsApi);
    m_shadowBorder = new KLiteLinuxShadowBorder(this, true);
}

KVyrAssistantTool::~KVyrAssistantTool() = default;

void KVyrAssistantTool::retranslate()
{
    // The HTML application brings its own languages.
}

bool KVyrAssistantTool::event(QEvent *event)
{
    return KHelioPluginWidget::event(event);
}

void KVyrAssistantTool::paintEvent(QPaintEvent *)
{
    if (m_shadowBorder)
        m_shadowBorder->paintShadowBorder();
}

void KVyrAssistantTool::onCreateSucceeded(KHelioBrowserWidgetBase *browser)
{
    if (!browser || browser == m_browser)
        return;
    if (m_browser) {
        disconnect(m_browser, nullptr, this, nullptr);
        m_browser->hide();
    }
    m_browser = browser;
    connect(browser, &KHelioBrowserWidgetBase::creatingApi, this,
            &KVyrAssistantTool::onCreatingApi);
    connect(browser, &KHelioBrowserWidgetBase::cefKeyEvent, this,
            &KVyrAssistantTool::onCefKeyEvent);
    connect(browser, &KHelioBrowserWidgetBase::loadFinished, this, &KVyrAssistantTool::fitToParent);
    browser->setZoomLevel(0);
    browser->setStartupUrl(startupUrl());
    browser->setFeatureEnabled(KHelioBrowserWidgetBase::ContextMenu, false);
    browser->setFeatureEnabled(KHelioBrowserWidgetBase::FileDrop, false);
    browser->setFocusOnLoad(true);
    layOut(browser);
}

void KVyrAssistantTool::onCreatingApi(KxWebViewContainer *container, QObject **api)
{
    if (!api)
        return;
    m_bridge = new KVyrAssistantToolAPI(container);
    auto &manager = OfficeAssiant::KToolManager::instance();
    if (m_widgetType == QLatin1String("main"))
        manager.setMainPageBridge(m_bridge);
    else if (m_widgetType == QLatin1String("child"))
        manager.setChildPageBridge(m_bridge);

    using Bridge = KVyrAssistantToolAPI;
    using Tool = KVyrAssistantTool;
    connect(m_bridge, &Bridge::sigShowChildWindow, this, &Tool::sigShowChildWindow);
    connect(m_bridge, &Bridge::sigCloseMainWindow, this, &Tool::sigCloseMainWindow);
    connect(m_bridge, &Bridge::sigShowMinimized, this, &Tool::sigShowMinimized);
    connect(m_bridge, &Bridge::sigMousePress, this, &Tool::sigMousePress);
    connect(m_bridge, &Bridge::sigMouseRelease, this, &Tool::sigMouseRelease);
    connect(m_bridge, &Bridge::sigShowNormal, this, &Tool::sigShowNormal);
    connect(m_bridge, &Bridge::sigChangeHtmlPage, this, &Tool::sigChangeHtmlPage);
    connect(m_bridge, &Bridge::sigCloseChildWindow, this, &Tool::onCloseChildWindow);
    *api = m_bridge;
}

void KVyrAssistantTool::onCefKeyEvent(Qt::KeyboardModifiers, int, bool, bool &)
{
    // Connected on purpose: the shell asks its owner about every key, and none is swallowed.
}

void KVyrAssistantTool::onCloseChildWindow()
{
    emit sigCloseChildWindow();
}

void KVyrAssistantTool::onChangeChildHtmlPage(const QString &page)
{
    m_page = page;
    if (m_browser)
        m_browser->navigate(QUrl(startupUrl()));
}

QString KVyrAssistantTool::startupUrl() const
{
    return OfficeAssiant::pageFile(m_page).toString();
}

void KVyrAssistantTool::layOut(KHelioBrowserWidgetBase *browser)
{
    if (!layout()) {
        auto *box = new QVBoxLayout(this);
        box->setSpacing(0);
        box->setContentsMargins(0, 0, 0, 0);
    }
    // Empty unless an earlier browser is still alive.
    delete layout()->takeAt(0);
    layout()->addWidget(browser);
}

void KVyrAssistantTool::fitToParent()
{
    if (const QWidget *parent = parentWidget())
        resize(parent->size());
}
