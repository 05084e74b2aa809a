#include "helio/shell/assistantwindows.h"

#include "helio/shell/window/pagewindow.h"
#include "helio/webengine/webenginebrowser.h"

namespace {

constexpr QSize mainSize(1000, 680);
constexpr QSize mainMinimum(900, 600);
constexpr QSize childSize(920, 620);
constexpr QSize childMinimum(720, 480);

/// How long a page may take to close its view.
constexpr int closeGraceMs = 1000;

/// Gives the main page a head start; no user opens a view sooner.
constexpr int childDelayMs = 250;

} // namespace

namespace shell {

AssistantWindows::AssistantWindows(const QString &startPage, const QString &waitingPage,
                                   QObject *parent)
    : QObject(parent),
      m_main(std::make_unique<PageWindow>(QStringLiteral("main"), startPage, nullptr)),
      m_waitingPage(waitingPage)
{
    m_main->setMinimumSize(mainMinimum);
    m_main->resize(mainSize);
    connect(m_main.get(), &PageWindow::closeRequested, this, &AssistantWindows::endRequested);
    m_closeGrace.setSingleShot(true);
    m_closeGrace.setInterval(closeGraceMs);
    connect(&m_closeGrace, &QTimer::timeout, this,
            [this] { m_child->browser()->closeInPlaceOfPage(); });
    if (!m_main->pageSignals())
        return;
    connect(m_main->pageSignals(), &helio::WindowSignals::sigCloseMainWindow, this,
            &AssistantWindows::endRequested);
    connectPage(m_main.get());
    m_childDelay.setSingleShot(true);
    m_childDelay.setInterval(childDelayMs);
    connect(&m_childDelay, &QTimer::timeout, this, &AssistantWindows::prepareChild);
    if (m_main->browser() && !m_waitingPage.isEmpty())
        connect(m_main->browser(), &helio::WebEngineBrowser::loadFinished, &m_childDelay,
                qOverload<>(&QTimer::start));
}

AssistantWindows::~AssistantWindows() = default;

PageWindow *AssistantWindows::mainWindow() const
{
    return m_main.get();
}

void AssistantWindows::present()
{
    const bool hasView = m_child && m_child->isVisible();
    m_main->present();
    if (hasView)
        m_child->present();
}

void AssistantWindows::connectPage(PageWindow *window)
{
    // Either page may open a view in the child window or close the current one.
    using Signals = helio::WindowSignals;
    connect(window->pageSignals(), &Signals::sigChangeHtmlPage, this,
            &AssistantWindows::changeChildPage);
    connect(window->pageSignals(), &Signals::sigShowChildWindow, this,
            &AssistantWindows::showChild);
    connect(window->pageSignals(), &Signals::sigCloseChildWindow, this,
            &AssistantWindows::hideChild);
    connect(window->pageSignals(), &Signals::sigShowMinimized, this, &AssistantWindows::minimize);
    connect(window->pageSignals(), &Signals::sigShowNormal, this, &AssistantWindows::restore);
    connect(window, &PageWindow::restored, this, &AssistantWindows::restore);
}

void AssistantWindows::minimize()
{
    for (PageWindow *window : {m_child, m_main.get()}) {
        if (window && window->isVisible())
            window->showMinimized();
    }
}

void AssistantWindows::restore()
{
    for (PageWindow *window : {m_main.get(), m_child}) {
        if (window && window->isVisible() && window->isMinimized())
            window->restore();
    }
}

void AssistantWindows::prepareChild()
{
    if (!m_child)
        makeChild(m_waitingPage);
}

void AssistantWindows::makeChild(const QString &html)
{
    m_child = new PageWindow(QStringLiteral("child"), html, m_main.get());
    m_child->setMinimumSize(childMinimum);
    m_child->resize(childSize);
    connect(m_child, &PageWindow::closeRequested, this, &AssistantWindows::closeChildFromOutside);
    connect(m_child->pageSignals(), &helio::WindowSignals::sigCloseMainWindow, this,
            &AssistantWindows::closeChildFromOutside);
    connect(m_child->browser(), &helio::WebEngineBrowser::titleChanged, m_child,
            &QWidget::setWindowTitle);
    connectPage(m_child);
}

void AssistantWindows::showChild(const QString &html)
{
    m_closeGrace.stop();
    if (!m_child)
        makeChild(html);
    m_child->present();
}

void AssistantWindows::changeChildPage(const QString &html)
{
    if (m_child)
        m_child->changePage(html);
}

void AssistantWindows::hideChild()
{
    m_closeGrace.stop();
    if (!m_child || !m_child->isVisible())
        return;
    m_child->hide();
    m_main->activateWindow();
    if (m_main->browser())
        m_main->browser()->setFocus();
}

void AssistantWindows::closeChildFromOutside()
{
    hideChild();
    // The page knows what its view has to stop; the library then tells the main page.
    if (m_child->browser()->askPageToClose())
        m_closeGrace.start();
    else
        m_child->browser()->closeInPlaceOfPage();
}

} // namespace shell
