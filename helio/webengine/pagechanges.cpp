// Which page a browser shows, and how another takes its place.

#include <QWebEngineView>

#include "helio/webengine/localpage.h"
#include "helio/webengine/webenginebrowser.h"

namespace helio {

void WebEngineBrowser::navigate(const QUrl &url)
{
    m_url = url;
    if (showsViews() && m_directory.contains(url)) {
        m_isAsking = true;
        m_page->showView(url.fileName(), [this, url](bool isShown) {
            m_isAsking = false;
            if (!isShown && m_url == url)
                load();
        });
        return;
    }
    loadUnseen();
}

void WebEngineBrowser::setWaitingPage(const QString &name)
{
    m_page->setWaitingPage(name);
}

void WebEngineBrowser::waitAgain()
{
    const QUrl page = m_page->waitingPage();
    if (page.isEmpty() || (showsViews() && m_page->isWaiting()))
        return;
    m_url = page;
    if (!showsViews()) {
        loadUnseen();
        return;
    }
    m_page->hideView([this, page](bool isHidden) {
        if (!isHidden && m_url == page)
            loadUnseen();
    });
}

void WebEngineBrowser::reload()
{
    // The page may have navigated since it was opened. The waiting page has not.
    if (m_page->isAtHome() && !m_page->isWaitingPage())
        m_url = m_page->url();
    load();
}

void WebEngineBrowser::expectScript()
{
    // Chromium's new process for a page that has stopped may begin the document before it has the
    // script.
    --m_loadsForScript;
    m_page->runJavaScript(QStringLiteral("typeof helio"), [this](const QVariant &type) {
        if (type.toString() == QLatin1String("object"))
            m_loadsForScript = 0;
        else if (m_page->isAtHome())
            reload();
    });
}

void WebEngineBrowser::load()
{
    if (!m_directory.contains(m_url)) {
        sayNotShown();
        emit loadFinished(false);
        return;
    }
    m_layers.bringForward(m_view);
    // At once: what is asked for meanwhile is loaded, and not shown in the page before.
    m_isLoading = true;
    m_page->load(m_url);
}

bool WebEngineBrowser::showsViews() const
{
    return !m_isLoading && m_layers.front() == m_view && m_page->isWaitingPage();
}

void WebEngineBrowser::loadUnseen()
{
    load();
    if (m_wasShown && !isVisible() && m_layers.front() == m_view)
        m_layers.bringForward(m_ground);
}

} // namespace helio
