#pragma once

#include <QUrl>

#include "helio/webengine/layers/pagelayers.h"
#include "helio/webengine/pagedirectory.h"
#include "helio/webengine/wire/pageoperations.h"
#include "host/kheliobrowser.h"

class QWebEngineProfile;
class QWebEngineView;

namespace helio {

class DroppedFiles;
class LocalPage;
class PageNotice;
class PageWire;
class WebEngineContainer;
struct PageSurroundings;

/// The window's browser: Chromium, confined to the page directory. If a page has stopped or cannot
/// be shown, it shows a notice instead.
class WebEngineBrowser : public KHelioBrowserWidgetBase
{
    Q_OBJECT

public:
    /// Without @p helpers the shell offers the plug-in's commands and @p operations.
    WebEngineBrowser(QWebEngineProfile *profile, const PageDirectory &directory,
                     const PageSurroundings &surroundings, const PageHelpers &helpers,
                     const PageOperations &operations, KxWebViewCefJsApiFlag flag, QWidget *parent);
    ~WebEngineBrowser() override;

    void setZoomLevel(int level) override;
    void setFeatureEnabled(Feature feature, bool enabled) override;
    void setFocusOnLoad(bool focus) override;
    void setStartupUrl(const QString &url) override;
    void navigate(const QUrl &url) override;

    /// Names the page in which the next one can be shown without a new document.
    void setWaitingPage(const QString &name);
    /// Has that page in place of one that is no longer needed.
    void waitAgain();

    /// Tells whether the page has done what it marks as busy.
    void askWhetherReady(const std::function<void(bool)> &tell);

    /// Tells the page how its window is.
    void tellPage(const QJsonObject &window);

    /// Sends "closechildwindow" for the view of that type on behalf of the page.
    void closeInPlaceOfPage(const QString &type);

    /// Names the notice's button to leave the page, for one that does not close the window.
    void nameWayOut(const QString &name);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void showEvent(QShowEvent *event) override;

signals:
    /// The page's title, once the page has one, and whenever it changes.
    void titleChanged(const QString &title);

    /// The user pressed the notice's button to leave the page.
    void closeRequested();

private:
    /// What the shell offers, and what only this page can be told.
    PageOperations withOwn(const PageOperations &operations);
    void askForApi();
    void finishLoad(bool ok);
    void passTitle();
    void reload();
    void sayStopped();
    void sayNotShown();
    /// Loads the page again if it has arrived without its script.
    void expectScript();
    void load();
    /// Whether the page shows other pages without a new document.
    bool showsViews() const;
    /// Covers the page until it has loaded, where it is not seen.
    void loadUnseen();

    PageDirectory m_directory;
    KxWebViewCefJsApiFlag m_flag;
    /// The page, the empty ground and the notice.
    PageLayers m_layers;
    QWebEngineView *m_view;
    /// Covers the previous page until the next one has loaded, when a window is opened again.
    QWidget *m_ground;
    LocalPage *m_page;
    DroppedFiles *m_dropped;
    PageNotice *m_notice;
    PageWire *m_wire;
    WebEngineContainer *m_container;
    QUrl m_url;
    bool m_focusOnLoad = false;
    bool m_isLoading = false;
    /// The page was told to show another, and has not answered yet.
    bool m_isAsking = false;
    bool m_wasShown = false;
    /// How often a page that has stopped may still be loaded because it lacks its script.
    int m_loadsForScript = 0;
};

} // namespace helio
