#pragma once

#include <QWebEnginePage>

#include "helio/webengine/pagedirectory.h"

namespace helio {

/// A web page that never leaves the page directory, in no frame, and opens no other window.
class LocalPage : public QWebEnginePage
{
    Q_OBJECT

public:
    LocalPage(const PageDirectory &directory, QWebEngineProfile *profile, QObject *parent);

    /// Whether the document in the main frame comes from the page directory.
    bool isAtHome() const;

signals:
    /// The main frame has no document of the page directory: one could not be loaded, or the page
    /// has emptied itself.
    void documentLost();

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage *createWindow(WebWindowType type) override;

private:
    void judgeLoad(bool ok);
    void judgeAddress(const QUrl &url);

    PageDirectory m_directory;
    bool m_isArriving = false;
    mutable QUrl m_judgedUrl;
    mutable bool m_judgement = false;
};

} // namespace helio
