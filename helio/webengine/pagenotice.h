#pragma once

#include <QWidget>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace helio {

struct PageSurroundings;

/// Shown instead of a page that cannot be shown, with a button to reload it and one to leave.
class PageNotice : public QWidget
{
    Q_OBJECT

public:
    PageNotice(const PageSurroundings &surroundings, QWidget *parent);

    /// Says that the page's process has ended. Returns the notice itself.
    PageNotice *sayStopped();

    /// Says that the page @p name is missing or cannot be read. Returns the notice itself.
    PageNotice *sayNotShown(const QString &name);

    /// Says that the program's files are gone while it runs. Returns the notice itself.
    PageNotice *sayRemoved();

    /// Names the button to leave, which Escape then presses.
    void nameWayOut(const QString &name);

signals:
    void reloadRequested();
    void closeRequested();

protected:
    /// Moves the window, as the page's title bar is not there.
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void setColors(bool dark);
    QBoxLayout *makeButtons();

    QLabel *m_title;
    QLabel *m_explanation;
    QPushButton *m_leave;
    bool m_escapeLeaves = false;
};

} // namespace helio
