#pragma once

#include <QWidget>

class QBoxLayout;
class QLabel;

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

signals:
    void reloadRequested();
    void closeRequested();

protected:
    /// Moves the window, as the page's title bar is not there.
    void mousePressEvent(QMouseEvent *event) override;

private:
    void setColors(bool dark);
    QBoxLayout *makeButtons();

    QLabel *m_title;
    QLabel *m_explanation;
};

} // namespace helio
