#pragma once

#include <QUrl>

#include "helio/webengine/pagedirectory.h"
#include "host/kheliobrowser.h"

class KxWebViewAsynJSObject;
class QStackedLayout;
class QWebEngineProfile;
class QWebEngineView;

namespace helio {

class DoctorOperations;
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
    /// @p doctor may be null: then the shell offers nothing but the plug-in's commands.
    WebEngineBrowser(QWebEngineProfile *profile, const PageDirectory &directory,
                     const PageSurroundings &surroundings, DoctorOperations *doctor,
                     KxWebViewCefJsApiFlag flag, QWidget *parent);
    ~WebEngineBrowser() override;

    void setZoomLevel(int level) override;
    void setFeatureEnabled(Feature feature, bool enabled) override;
    void setFocusOnLoad(bool focus) override;
    void setStartupUrl(const QString &url) override;
    void navigate(const QUrl &url) override;

    /// Tells the page that the user closes its window, so that it stops what its view is doing and
    /// sends "closechildwindow". False if there is no page to tell.
    bool askPageToClose();

    /// Sends "closechildwindow" on behalf of a page that did not.
    void closeInPlaceOfPage();

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void showEvent(QShowEvent *event) override;

signals:
    /// The page's title, once the page has one, and whenever it changes.
    void titleChanged(const QString &title);

    /// The user pressed the notice's button to close the window.
    void closeRequested();

private:
    void askForApi();
    void finishLoad(bool ok);
    void passTitle();
    void reload();
    void load();
    /// Shows the page, the empty ground or the notice.
    void bringForward(QWidget *layer);

    PageDirectory m_directory;
    KxWebViewCefJsApiFlag m_flag;
    QStackedLayout *m_layers;
    QWebEngineView *m_view;
    /// Covers the previous page until the next one has loaded, when a window is opened again.
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
