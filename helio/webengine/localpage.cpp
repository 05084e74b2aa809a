#include "helio/webengine/localpage.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace helio {

LocalPage::LocalPage(const PageDirectory &directory, QWebEngineProfile *profile, QObject *parent)
    : QWebEnginePage(profile, parent), m_directory(directory)
{
    connect(this, &QWebEnginePage::loadFinished, this, &LocalPage::judgeLoad);
    connect(this, &QWebEnginePage::urlChanged, this, &LocalPage::judgeAddress);
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl &origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
}

bool LocalPage::isAtHome() const
{
    // Called for every command, so the file system is asked once per document.
    const QUrl current = url();
    if (current != m_judgedUrl) {
        m_judgedUrl = current;
        m_judgement = m_directory.contains(current);
    }
    return m_judgement;
}

void LocalPage::setWaitingPage(const QString &name)
{
    m_waitingPage = name;
}

QUrl LocalPage::waitingPage() const
{
    return m_waitingPage.isEmpty() ? QUrl() : m_directory.urlOf(m_waitingPage);
}

bool LocalPage::isWaitingPage() const
{
    return !m_waitingPage.isEmpty() && isAtHome() && url().fileName() == m_waitingPage;
}

bool LocalPage::isWaiting() const
{
    return isWaitingPage() && !url().hasFragment();
}

void LocalPage::showView(const QString &name, const std::function<void(bool)> &tell)
{
    const QString argument =
        QString::fromUtf8(QJsonDocument(QJsonArray{name}).toJson(QJsonDocument::Compact));
    ask(QStringLiteral("window.showView !== undefined && showView(...%1)").arg(argument), tell);
}

void LocalPage::hideView(const std::function<void(bool)> &tell)
{
    ask(QStringLiteral("window.hideView !== undefined && hideView()"), tell);
}

void LocalPage::askWhetherReady(const std::function<void(bool)> &tell)
{
    ask(QStringLiteral("document.querySelector('[aria-busy=true]') === null"), tell);
}

void LocalPage::ask(const QString &script, const std::function<void(bool)> &tell)
{
    runJavaScript(script, [tell](const QVariant &answer) { tell(answer.toBool()); });
}

void LocalPage::judgeLoad(bool ok)
{
    // A refused navigation also reports a failed load, but the current document stays.
    const bool lost = m_isArriving && !ok;
    m_isArriving = false;
    if (lost)
        emit documentLost();
}

void LocalPage::judgeAddress(const QUrl &url)
{
    // Chromium shows an empty document without asking first.
    if (!url.isEmpty() && !m_directory.contains(url))
        emit documentLost();
}

bool LocalPage::acceptNavigationRequest(const QUrl &url, NavigationType, bool isMainFrame)
{
    const bool accepted = m_directory.contains(url);
    if (!accepted)
        qWarning("refused to let a page navigate to %s",
                 qPrintable(url.toDisplayString().left(200)));
    else if (isMainFrame)
        m_isArriving = true;
    return accepted;
}

QWebEnginePage *LocalPage::createWindow(WebWindowType)
{
    return nullptr;
}

} // namespace helio
