#pragma once

#include <QWidget>

#include "helio/runtime/windowsignals.h"

class KHelioPluginWidget;

namespace helio {
class WebEngineBrowser;
}

namespace shell {

class WindowMover;

/// A frameless window around one page of the plug-in. It never closes by itself: whoever owns it
/// decides what a request to close means.
class PageWindow : public QWidget
{
    Q_OBJECT

public:
    /// A window for a page of type "main" or "child" that starts with the file @p html. A window
    /// with an @p owner stays above it.
    PageWindow(const QString &type, const QString &html, PageWindow *owner);
    ~PageWindow() override;

    /// What the page asks of its window; null when the plug-in offers no page.
    helio::WindowSignals *pageSignals() const;

    /// The page's browser; null when there is none.
    helio::WebEngineBrowser *browser() const;

    /// Shows another page of the directory, if the page can do that.
    void changePage(const QString &html);

    /// Shows the window in the middle of its owner, or of the screen, and gives it the focus.
    void present();

    /// Undoes a minimising; a maximised window is maximised again.
    void restore();

signals:
    /// The window manager, or the user by a key of it, wants the window closed.
    void closeRequested();

    /// The window is minimised no longer, whoever has restored it.
    void restored();

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void addPage(const QString &type, const QString &html);

    KHelioPluginWidget *m_page = nullptr;
    helio::WindowSignals *m_signals = nullptr;
    helio::WebEngineBrowser *m_browser = nullptr;
    WindowMover *m_mover;
};

} // namespace shell
