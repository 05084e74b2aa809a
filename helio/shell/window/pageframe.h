#pragma once

#include <QTimer>
#include <QWidget>

#include "helio/runtime/windowsignals.h"

class KHelioPluginWidget;

namespace helio {
class WebEngineBrowser;
}

namespace shell {

/// The place of one page of the plug-in in the window.
class PageFrame : public QWidget
{
    Q_OBJECT

public:
    /// A page of type "main" or "child" that starts with the file @p html.
    PageFrame(const QString &type, const QString &html, QWidget *parent);
    ~PageFrame() override;

    /// What the page asks of its window; null if the plug-in offers no page.
    helio::WindowSignals *pageSignals() const;

    /// The page's browser; null if there is none.
    helio::WebEngineBrowser *browser() const;

    /// Asks the page widget to show another file of the page directory.
    void changePage(const QString &html);

    /// Shows the page, which may have the keyboard from now on.
    void present();

    /// Has the page drawn behind others for at least @p milliseconds, without the keyboard, and
    /// hides it then. Chromium takes longer to draw a page that it did not draw before.
    void drawUnseen(int milliseconds);

    /// Gives the page the keyboard.
    void focusPage();

private:
    KHelioPluginWidget *m_page = nullptr;
    helio::WindowSignals *m_signals = nullptr;
    helio::WebEngineBrowser *m_browser = nullptr;
    QTimer m_unseen;
};

} // namespace shell
