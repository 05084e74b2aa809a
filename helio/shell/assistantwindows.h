#pragma once

#include <QObject>
#include <QTimer>

#include <memory>

namespace shell {

class PageWindow;

/// The main window and its child window, which follow the signals of their pages.
///
/// Windows and pages live as long as this object: a page's command may still be running, for
/// example in a dialog, when its window closes.
class AssistantWindows : public QObject
{
    Q_OBJECT

public:
    /// Makes the main window, still hidden, with the page @p startPage. Once that page has loaded,
    /// makes the child window too, hidden, with the page @p waitingPage: Chromium takes a while to
    /// start a page's process. Does not if @p waitingPage is empty.
    AssistantWindows(const QString &startPage, const QString &waitingPage,
                     QObject *parent = nullptr);
    ~AssistantWindows() override;

    PageWindow *mainWindow() const;

    /// Shows what the user sees of the assistant, with the view that is open, in front of other
    /// windows.
    void present();

signals:
    /// The main window should close and the program end.
    void endRequested();

private:
    void connectPage(PageWindow *window);
    /// Minimises both windows, whichever page asks: a page does so before it takes a picture of the
    /// screen.
    void minimize();
    void restore();
    void prepareChild();
    void makeChild(const QString &html);
    void showChild(const QString &html);
    void changeChildPage(const QString &html);
    void hideChild();
    void closeChildFromOutside();

    std::unique_ptr<PageWindow> m_main;
    /// Made at the latest when a page first opens a view. Owned by the main window and kept above
    /// it.
    PageWindow *m_child = nullptr;
    QTimer m_closeGrace;
    QTimer m_childDelay;
    QString m_waitingPage;
};

} // namespace shell
