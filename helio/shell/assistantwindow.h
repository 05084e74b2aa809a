#pragma once

#include <QTimer>
#include <QWidget>

#include "helio/shell/window/sidebarwidths.h"
#include "helio/shell/window/windowmemory.h"
#include "helio/webengine/wire/pageoperations.h"

namespace helio {
class WebEngineBrowser;
}

namespace shell {

class PageFrame;
class WindowMover;

/// The frameless window: the main page, which becomes a sidebar while the child page shows a view
/// beside it. It follows the signals of its pages.
///
/// The pages live as long as the window: a page's command may still be running, for example in a
/// dialog, when the window closes.
class AssistantWindow : public QWidget
{
    Q_OBJECT

public:
    /// Makes the window, still hidden, with the main page @p startPage. Once that page has loaded,
    /// makes the child page too, hidden, with @p waitingPage: Chromium takes a while to start a
    /// page's process. Does not if @p waitingPage is empty. The window opens as @p memory has it.
    AssistantWindow(const QString &startPage, const QString &waitingPage,
                    const WindowMemory &memory);
    ~AssistantWindow() override;

    /// The browser of the main page; null if the plug-in offers no page.
    helio::WebEngineBrowser *mainBrowser() const;

    /// Shows the window in front of others and gives it the keyboard. The main page starts
    /// @p action, as in ShellOptions, if it knows it.
    void present(const QString &action);

    /// What pages may ask of this window, see docs/host.md.
    QJsonObject takeAction();
    QJsonObject expectView();
    QJsonObject leaveView(const QJsonObject &view);
    QJsonObject toggleMaximised();
    QJsonObject useSidebar(const QJsonObject &widths);
    QJsonObject state() const;

signals:
    /// The window should close and the program end.
    void endRequested();

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// A page that opens another view closes the current one first.
    static constexpr int hideDelayMs = 20;

    void connectPage(PageFrame *page);
    void prepareChild();
    void makeChild(const QString &html);
    void changeChildPage(const QString &html);
    void showChild(const QString &html);
    void hideChild();
    /// F6 takes the keyboard from the main page to the view and back.
    void takeKey(Qt::KeyboardModifiers modifiers, int key, bool pressed, bool &handled);
    /// Brings a minimised window back; one that was maximised is maximised again.
    void restore();
    void layOut();
    void tellPages();
    void remember();

    WindowMemory m_memory;
    WindowMover *m_mover;
    PageFrame *m_main;
    /// Made at the latest when a page first opens a view.
    PageFrame *m_child = nullptr;
    QString m_waitingPage;
    /// The page that is shown beside the main page; empty if none is.
    QString m_view;
    /// What the main page should start, until it has asked.
    QString m_action;
    /// The page to open again, until the main page has asked.
    QString m_lastView;
    SidebarWidths m_sidebar;
    QTimer m_childDelay;
    QTimer m_hideDelay;
    /// A child page that was closed stays under the main one for a moment.
    bool m_isChildShown = false;
    QTimer m_memoryDelay;
};

} // namespace shell
