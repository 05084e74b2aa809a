#include "helio/shell/window/pagewindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

#include "helio/shell/window/resizegrip.h"
#include "helio/shell/window/windowmover.h"
#include "helio/webengine/webenginebrowser.h"
#include "host/kheliopluginwidget.h"
#include "host/kheliopluginwidgetfactory.h"

namespace {

/// The width of the line around the frameless window.
constexpr int outline = 1;

} // namespace

namespace shell {

PageWindow::PageWindow(const QString &type, const QString &html, PageWindow *owner)
    : QWidget(owner, Qt::Window | Qt::FramelessWindowHint), m_mover(new WindowMover(this))
{
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setAutoFillBackground(true);
    QPalette colors = palette();
    colors.setColor(QPalette::Window, QColor(0x80, 0x86, 0x90));
    setPalette(colors);
    addPage(type, html);
    ResizeGrip::addTo(this);
}

PageWindow::~PageWindow() = default;

helio::WindowSignals *PageWindow::pageSignals() const
{
    return m_signals;
}

helio::WebEngineBrowser *PageWindow::browser() const
{
    return m_browser;
}

void PageWindow::changePage(const QString &html)
{
    // The class is private to the plug-in; its slot is part of the interface.
    QMetaObject::invokeMethod(m_page, "onChangeChildHtmlPage", Q_ARG(QString, html));
}

void PageWindow::present()
{
    if (!isVisible()) {
        const QRect around = parentWidget() ? parentWidget()->window()->frameGeometry()
                                            : screen()->availableGeometry();
        QRect area(QPoint(), size().boundedTo(screen()->availableSize()));
        area.moveCenter(around.center());
        setGeometry(area);
    }
    restore();
    raise();
    activateWindow();
    if (m_browser)
        m_browser->setFocus();
}

void PageWindow::restore()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
}

void PageWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    const auto before = static_cast<QWindowStateChangeEvent *>(event)->oldState();
    if (before.testFlag(Qt::WindowMinimized) && !isMinimized())
        emit restored();
}

void PageWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    emit closeRequested();
}

void PageWindow::addPage(const QString &type, const QString &html)
{
    auto *frame = new QWidget(this);
    frame->setProperty("widgettype", type);
    frame->setProperty("htmlpath", html);
    auto *windowLayout = new QVBoxLayout(this);
    windowLayout->setContentsMargins(outline, outline, outline, outline);
    windowLayout->addWidget(frame);

    auto *item = KHelioPluginWidgetFactory::pagePlugin(KHelioPluginWidget::OfficeAssistantPage);
    if (!item)
        return;
    m_page = item->create(frame);
    auto *pageLayout = new QVBoxLayout(frame);
    pageLayout->setContentsMargins(0, 0, 0, 0);
    pageLayout->addWidget(m_page);
    m_signals = new helio::WindowSignals(m_page);
    m_browser = m_page->findChild<helio::WebEngineBrowser *>();

    using Signals = helio::WindowSignals;
    connect(m_signals, &Signals::sigMousePress, m_mover, &WindowMover::start);
    connect(m_signals, &Signals::sigMouseRelease, m_mover, &WindowMover::stop);
    if (m_browser)
        connect(m_browser, &helio::WebEngineBrowser::closeRequested, this,
                &PageWindow::closeRequested);
}

} // namespace shell
