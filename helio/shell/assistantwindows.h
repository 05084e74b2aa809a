#pragma once

#include <QObject>
#include <QTimer>

#include <memory>

namespace shell {

class PageWindow;

/// The main window and the child window that it opens, joined by the signals of their pages.
///
/// Windows and pages live as long as this object, since a command of a page may be running (in a
/// dialog, say) when its window closes.
class AssistantWindows : public QObject
{
    Q_OBJECT

public:
    /// Makes the main window, which is not shown yet, with the page @p startPage.
    /// Once that page is there, the child window is made as well and waits out of sight with the
    /// page @p waitingPage, unless that is empty: Chromium takes its time to start a page's
    /// process.
    AssistantWindows(const QString &startPage, const QString &waitingPage,
                     QObject *parent = nullptr);
    ~AssistantWindows() override;

    PageWindow *mainWindow() const;

signals:
    /// The main window is to be closed, and the program with it.
    void endRequested();

private:
    void connectPage(PageWindow *window);
    /// Both windows, whichever page asks for it: neither is to be in a picture of the screen, and
    /// one without the other would be of no use.
    void minimize();
    void restore();
    void prepareChild();
    void makeChild(const QString &html);
    void showChild(const QString &html);
    void changeChildPage(const QString &html);
    void hideChild();
    void closeChildFromOutside();

    std::unique_ptr<PageWindow> m_main;
    /// Made when a page first opens a view, if not before; owned by the main window, above which it
    /// stays.
    PageWindow *m_child = nullptr;
    QTimer m_closeGrace;
    QTimer m_childDelay;
    QString m_waitingPage;
};

} // namespace shell
