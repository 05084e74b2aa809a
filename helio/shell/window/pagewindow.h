#pragma once

#include <QWidget>

#include "helio/runtime/windowsignals.h"

class KHelioPluginWidget;

namespace helio {
class WebEngineBrowser;
}

namespace shell {

class WindowMover;

/// A frameless window with one page of the plug-in. It does not close by itself: its owner decides
/// what to do when that is requested.
class PageWindow : public QWidget
{
    Q_OBJECT

public:
    /// A window with a page of type "main" or "child" that starts with the file @p html. It stays
    /// above its @p owner, if it has one.
    PageWindow(const QString &type, const QString &html, PageWindow *owner);
    ~PageWindow() override;

    /// What the page asks of its window; null if the plug-in offers no page.
    helio::WindowSignals *pageSignals() const;

    /// The page's browser; null if there is none.
    helio::WebEngineBrowser *browser() const;

    /// Asks the page widget to show another file of the page directory.
    void changePage(const QString &html);

    /// Shows the window, centred on its owner or on the screen, and gives it the focus.
    void present();

    /// Restores a minimised window; one that was maximised is maximised again.
    void restore();

signals:
    /// The window manager or the page's notice asks to close the window.
    void closeRequested();

    /// The window is no longer minimised, whoever restored it.
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
