#pragma once

#include <QUrl>

#include "helio/webengine/pagedirectory.h"
#include "host/kheliobrowser.h"

class KxWebViewAsynJSObject;
class QStackedLayout;
class QWebEngineProfile;
class QWebEngineView;

namespace helio {

class LocalPage;
class PageNotice;
class PageWire;
class WebEngineContainer;
struct PageSurroundings;

/// The window's browser: Chromium, kept to the page directory. In the place of a page that is gone
/// or cannot be shown it shows a notice with a way back.
class WebEngineBrowser : public KHelioBrowserWidgetBase
{
    Q_OBJECT

public:
    WebEngineBrowser(QWebEngineProfile *profile, const PageDirectory &directory,
                     const PageSurroundings &surroundings, KxWebViewCefJsApiFlag flag,
                     QWidget *parent);
    ~WebEngineBrowser() override;

    void setZoomLevel(int level) override;
    void setFeatureEnabled(Feature feature, bool enabled) override;
    void setFocusOnLoad(bool focus) override;
    void setStartupUrl(const QString &url) override;
    void navigate(const QUrl &url) override;

    /// Tells the page that the user closed its window from outside, so that it ends what belongs to
    /// its view and sends "closechildwindow". False when no page is there to be told.
    bool askPageToClose();

    /// Sends "closechildwindow" for a page that does not.
    void closeInPlaceOfPage();

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void showEvent(QShowEvent *event) override;

signals:
    /// The page's title, once there is a page that has one.
    void titleChanged(const QString &title);

    /// The notice's button that gives up the page.
    void closeRequested();

private:
    void askForApi();
    void finishLoad(bool ok);
    void passTitle();
    void reload();
    void load();
    /// Shows the page's view, the empty ground or the notice.
    void bringForward(QWidget *layer);

    PageDirectory m_directory;
    KxWebViewCefJsApiFlag m_flag;
    QStackedLayout *m_layers;
    QWebEngineView *m_view;
    /// Shown instead of an earlier page of a window that is opened again.
    QWidget *m_ground;
    LocalPage *m_page;
    PageNotice *m_notice;
    PageWire *m_wire;
    WebEngineContainer *m_container;
    KxWebViewAsynJSObject *m_api = nullptr;
    QUrl m_url;
    bool m_focusOnLoad = false;
    bool m_isLoading = false;
    bool m_wasShown = false;
};

} // namespace helio
