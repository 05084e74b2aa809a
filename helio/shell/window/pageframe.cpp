#include "helio/shell/window/pageframe.h"

#include <QVBoxLayout>

#include "helio/webengine/webenginebrowser.h"
#include "host/kheliopluginwidget.h"
#include "host/kheliopluginwidgetfactory.h"

namespace shell {

PageFrame::PageFrame(const QString &type, const QString &html, QWidget *parent) : QWidget(parent)
{
    // The page widget reads both from its parent.
    setProperty("widgettype", type);
    setProperty("htmlpath", html);
    m_unseen.setSingleShot(true);
    connect(&m_unseen, &QTimer::timeout, this, &QWidget::hide);
    auto *item = KHelioPluginWidgetFactory::pagePlugin(KHelioPluginWidget::OfficeAssistantPage);
    if (!item)
        return;
    m_page = item->create(this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_page);
    m_signals = new helio::WindowSignals(m_page);
    m_browser = m_page->findChild<helio::WebEngineBrowser *>();
}

PageFrame::~PageFrame() = default;

helio::WindowSignals *PageFrame::pageSignals() const
{
    return m_signals;
}

helio::WebEngineBrowser *PageFrame::browser() const
{
    return m_browser;
}

void PageFrame::changePage(const QString &html)
{
    // The class is private to the plug-in; its slot is part of the interface.
    QMetaObject::invokeMethod(m_page, "onChangeChildHtmlPage", Q_ARG(QString, html));
}

void PageFrame::present()
{
    m_unseen.stop();
    setEnabled(true);
    show();
}

void PageFrame::drawUnseen(int milliseconds)
{
    setEnabled(false);
    show();
    if (m_unseen.remainingTime() < milliseconds)
        m_unseen.start(milliseconds);
}

void PageFrame::focusPage()
{
    if (m_browser)
        m_browser->setFocus();
}

} // namespace shell
