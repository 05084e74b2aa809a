#pragma once

#include <QWebEnginePage>

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

signals:
    /// The main frame shows no document of the page directory: loading one failed, or the page
    /// replaced itself by an empty one.
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
