#include "helio/shell/assistantwindow.h"

#include <QCloseEvent>
#include <QGuiApplication>

#include "helio/shell/window/pageframe.h"
#include "helio/shell/window/resizegrip.h"
#include "helio/shell/window/windowmover.h"
#include "helio/webengine/webenginebrowser.h"
#include "texts/texts.h"

namespace {

/// The width of the line around the frameless window.
constexpr int outline = 1;
constexpr QRgb outlineColor = 0xff808690;

/// Gives the main page a head start; no user opens a view sooner.
constexpr int childDelayMs = 250;

/// In which a view that was closed leaves an empty picture: its own would be seen for a moment when
/// the next one is opened.
constexpr int emptyDelayMs = 500;

constexpr int memoryDelayMs = 300;

void startLater(QTimer &timer, int milliseconds)
{
    timer.setSingleShot(true);
    timer.setInterval(milliseconds);
}

} // namespace

namespace shell {

AssistantWindow::AssistantWindow(const QString &startPage, const QString &waitingPage,
                                 const WindowMemory &memory)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      m_memory(memory),
      m_mover(new WindowMover(this)),
      m_main(new PageFrame(QStringLiteral("main"), startPage, this)),
      m_waitingPage(waitingPage)
{
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setAutoFillBackground(true);
    setPalette(QPalette(QColor(outlineColor)));
    ResizeGrip::addTo(this);
    startLater(m_childDelay, childDelayMs);
    startLater(m_hideDelay, hideDelayMs);
    startLater(m_memoryDelay, memoryDelayMs);
    connect(&m_childDelay, &QTimer::timeout, this, &AssistantWindow::prepareChild);
    connect(&m_hideDelay, &QTimer::timeout, this, &AssistantWindow::hideChild);
    connect(&m_memoryDelay, &QTimer::timeout, this, &AssistantWindow::remember);

    const RememberedWindow last = m_memory.read();
    m_lastView = last.view;
    placeWindow(this, last.area);
    if (last.isMaximised)
        setWindowState(Qt::WindowMaximized);
    if (!m_main->browser())
        return;
    connectPage(m_main);
    connect(m_main->browser(), &helio::WebEngineBrowser::closeRequested, this,
            &AssistantWindow::endRequested);
    if (!m_waitingPage.isEmpty())
        connect(m_main->browser(), &helio::WebEngineBrowser::loadFinished, &m_childDelay,
                qOverload<>(&QTimer::start));
}

AssistantWindow::~AssistantWindow()
{
    if (m_memoryDelay.isActive())
        remember();
}

helio::WebEngineBrowser *AssistantWindow::mainBrowser() const
{
    return m_main->browser();
}

void AssistantWindow::present(const QString &action)
{
    restore();
    raise();
    activateWindow();
    (m_isChildShown ? m_child : m_main)->focusPage();
    if (action.isEmpty())
        return;
    m_action = action;
    m_lastView.clear();
    tellPages();
}

void AssistantWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    layOut();
    tellPages();
    m_memoryDelay.start();
}

void AssistantWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    emit endRequested();
}

void AssistantWindow::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    m_memoryDelay.start();
}

void AssistantWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut();
    m_memoryDelay.start();
}

void AssistantWindow::connectPage(PageFrame *page)
{
    // Either page may open a view or close the current one.
    using Signals = helio::WindowSignals;
    Signals *asked = page->pageSignals();
    connect(asked, &Signals::sigCloseMainWindow, this, &AssistantWindow::endRequested);
    connect(asked, &Signals::sigChangeHtmlPage, this, &AssistantWindow::changeChildPage);
    connect(asked, &Signals::sigShowChildWindow, this, &AssistantWindow::showChild);
    connect(asked, &Signals::sigCloseChildWindow, &m_hideDelay, qOverload<>(&QTimer::start));
    connect(asked, &Signals::sigShowMinimized, this, &QWidget::showMinimized);
    connect(asked, &Signals::sigShowNormal, this, &AssistantWindow::restore);
    connect(page->browser(), &helio::WebEngineBrowser::cefKeyEvent, this,
            &AssistantWindow::takeKey);
    connect(asked, &Signals::sigMousePress, m_mover, &WindowMover::start);
    connect(asked, &Signals::sigMouseRelease, m_mover, &WindowMover::stop);
}

void AssistantWindow::prepareChild()
{
    if (!m_child) {
        makeChild(m_waitingPage);
    } else if (!m_isChildShown) {
        m_child->browser()->waitAgain();
        m_child->drawUnseen(emptyDelayMs);
    }
}

void AssistantWindow::makeChild(const QString &html)
{
    m_child = new PageFrame(QStringLiteral("child"), html, this);
    m_child->stackUnder(m_main);
    m_child->hide();
    layOut();
    connectPage(m_child);
    m_child->browser()->nameWayOut(texts::tr("Back"));
    m_child->browser()->setWaitingPage(m_waitingPage);
    connect(m_child->browser(), &helio::WebEngineBrowser::closeRequested, this,
            [this] { m_child->browser()->closeInPlaceOfPage({}); });
    connect(m_child->browser(), &helio::WebEngineBrowser::titleChanged, this,
            [this](const QString &title) {
                if (m_isChildShown)
                    setWindowTitle(title);
            });
}

void AssistantWindow::changeChildPage(const QString &html)
{
    m_childDelay.stop();
    if (m_child)
        m_child->changePage(html);
}

void AssistantWindow::showChild(const QString &html)
{
    m_hideDelay.stop();
    m_childDelay.stop();
    m_hideDelay.setInterval(hideDelayMs);
    if (!m_child)
        makeChild(html);
    m_isChildShown = true;
    m_view = html;
    m_child->present();
    layOut();
    m_child->focusPage();
    tellPages();
    m_memoryDelay.start();
}

void AssistantWindow::hideChild()
{
    m_hideDelay.stop();
    if (!m_isChildShown)
        return;
    m_view.clear();
    m_isChildShown = false;
    // Over the child page, which is hidden once it has drawn nothing.
    layOut();
    setWindowTitle(QGuiApplication::applicationDisplayName());
    m_main->focusPage();
    // It must not take the keyboard by what it still loads.
    m_child->setEnabled(false);
    tellPages();
    m_memoryDelay.start();
    m_childDelay.start();
}

void AssistantWindow::takeKey(Qt::KeyboardModifiers, int key, bool pressed, bool &handled)
{
    if (key != Qt::Key_F6 || !m_isChildShown)
        return;
    handled = true;
    if (pressed)
        (sender() == m_main->browser() ? m_child : m_main)->focusPage();
}

void AssistantWindow::restore()
{
    // A Wayland session brings no minimised window back, but shows one anew.
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        hide();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
}

void AssistantWindow::layOut()
{
    const int line = isMaximized() ? 0 : outline;
    const QRect whole = rect().adjusted(line, line, -line, -line);
    QRect side = whole;
    side.setWidth(m_sidebar.widthIn(width()));
    // Also while it is hidden, so that a view has its size when it is shown.
    if (m_child)
        m_child->setGeometry(whole.adjusted(side.width(), 0, 0, 0));
    m_main->setGeometry(m_isChildShown ? side : whole);
}

void AssistantWindow::tellPages()
{
    for (const PageFrame *page : {m_main, m_child}) {
        if (page && page->browser())
            page->browser()->tellPage(state());
    }
}

void AssistantWindow::remember()
{
    m_memoryDelay.stop();
    m_memory.keep({normalGeometry(), isMaximized(), m_view});
}

} // namespace shell
