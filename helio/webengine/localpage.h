#pragma once

#include <QWebEnginePage>

#include <functional>

#include "helio/webengine/pagedirectory.h"

namespace helio {

/// A web page of which no frame leaves the page directory, and which opens no windows.
class LocalPage : public QWebEnginePage
{
    Q_OBJECT

public:
    LocalPage(const PageDirectory &directory, QWebEngineProfile *profile, QObject *parent);

    /// Whether the document in the main frame is in the page directory.
    bool isAtHome() const;

    /// Names the page of the page directory that can show another without a new document.
    void setWaitingPage(const QString &name);
    /// Its address; empty if there is none.
    QUrl waitingPage() const;
    /// Whether it is the document, whatever it shows.
    bool isWaitingPage() const;
    /// Whether it is the document and shows nothing yet.
    bool isWaiting() const;

    /// Has the waiting page show the page @p name in place of what it shows, and tells whether it
    /// does.
    void showView(const QString &name, const std::function<void(bool)> &tell);
    /// Has the waiting page end what it shows, and tells whether nothing of it is left.
    void hideView(const std::function<void(bool)> &tell);
    /// Tells whether nothing in the document is marked as busy.
    void askWhetherReady(const std::function<void(bool)> &tell);

signals:
    /// The main frame shows no document of the page directory: loading one failed, or the page
    /// replaced itself by an empty one.
    void documentLost();

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage *createWindow(WebWindowType type) override;

private:
    void ask(const QString &script, const std::function<void(bool)> &tell);
    void judgeLoad(bool ok);
    void judgeAddress(const QUrl &url);

    PageDirectory m_directory;
    QString m_waitingPage;
    bool m_isArriving = false;
    mutable QUrl m_judgedUrl;
    mutable bool m_judgement = false;
};

} // namespace helio
