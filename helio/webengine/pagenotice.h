#pragma once

#include <QWidget>

#include "helio/webengine/noticetexts.h"

class QBoxLayout;
class QLabel;

namespace helio {

struct PageSurroundings;

/// Stands in the place of a page that is not there, with a way to get it back and a way to leave.
class PageNotice : public QWidget
{
    Q_OBJECT

public:
    PageNotice(const PageSurroundings &surroundings, QWidget *parent);

    /// Says that the process behind the page has ended. Gives the notice itself.
    PageNotice *sayStopped();

    /// Says that the page @p name is missing or cannot be read. Gives the notice itself.
    PageNotice *sayNotShown(const QString &name);

signals:
    void reloadRequested();
    void closeRequested();

protected:
    /// Moves the window, whose title bar was part of the page.
    void mousePressEvent(QMouseEvent *event) override;

private:
    void setColors(bool dark);
    QBoxLayout *makeButtons();

    NoticeTexts m_texts;
    QLabel *m_title;
    QLabel *m_explanation;
};

} // namespace helio
