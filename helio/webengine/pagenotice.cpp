#include "helio/webengine/pagenotice.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include "helio/webengine/pagesurroundings.h"
#include "texts/texts.h"

namespace {

constexpr int textWidth = 420;
constexpr double titleScale = 1.4;

} // namespace

namespace helio {

PageNotice::PageNotice(const PageSurroundings &surroundings, QWidget *parent)
    : QWidget(parent),
      m_title(new QLabel(this)),
      m_explanation(new QLabel(this)),
      m_leave(new QPushButton(texts::tr("Close window"), this))
{
    // Its place may be as narrow as it likes.
    setMinimumSize(1, 1);
    setColors(surroundings.isDark());
    QFont titleFont = font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * titleScale);
    titleFont.setBold(true);
    m_title->setFont(titleFont);
    for (QLabel *label : {m_title, m_explanation}) {
        label->setTextFormat(Qt::PlainText);
        label->setAlignment(Qt::AlignHCenter);
        label->setWordWrap(true);
    }

    auto *column = new QVBoxLayout;
    column->setSpacing(12);
    column->addStretch();
    column->addWidget(m_title);
    column->addWidget(m_explanation);
    column->addSpacing(8);
    column->addLayout(makeButtons());
    column->addStretch();
    auto *row = new QHBoxLayout(this);
    row->addStretch();
    row->addLayout(column);
    row->addStretch();
}

PageNotice *PageNotice::sayStopped()
{
    m_title->setText(texts::tr("This page has stopped"));
    m_explanation->setText(
        texts::tr("The process that displays it ended unexpectedly. Reload the page to continue. "
                  "Exported files are not affected."));
    return this;
}

PageNotice *PageNotice::sayNotShown(const QString &name)
{
    m_title->setText(texts::tr("This page cannot be shown"));
    m_explanation->setText(
        texts::tr("The page \"%1\" is missing or cannot be read. Reinstall the program and try "
                  "again.")
            .arg(name));
    return this;
}

PageNotice *PageNotice::sayRemoved()
{
    m_title->setText(texts::tr("The program has been removed"));
    m_explanation->setText(
        texts::tr("Its files are gone since this window was opened. Install the program again, "
                  "close this window and open it again."));
    return this;
}

void PageNotice::nameWayOut(const QString &name)
{
    m_leave->setText(name);
    m_escapeLeaves = true;
}

void PageNotice::keyPressEvent(QKeyEvent *event)
{
    // No shortcuts: both pages of the window may have a notice.
    if (event->matches(QKeySequence::Refresh))
        emit reloadRequested();
    else if (event->matches(QKeySequence::Cancel) && m_escapeLeaves)
        emit closeRequested();
    else
        QWidget::keyPressEvent(event);
}

void PageNotice::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const QMargins margins = layout()->contentsMargins();
    const int room = width() - margins.left() - margins.right();
    // With a fixed width a label gets the height that its lines need.
    for (QLabel *label : {m_title, m_explanation})
        label->setFixedWidth(qMax(1, qMin(textWidth, room)));
}

void PageNotice::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && window()->windowHandle())
        window()->windowHandle()->startSystemMove();
}

void PageNotice::setColors(bool dark)
{
    // The colours of the pages: the option --theme may differ from the desktop's palette.
    QPalette colors = dark ? QPalette(QColor(0x2b, 0x2f, 0x38), QColor(0x16, 0x18, 0x1d))
                           : QPalette(QColor(0xe4, 0xe7, 0xec), QColor(0xf5, 0xf6, 0xf8));
    setPalette(colors);
    setAutoFillBackground(true);
}

QBoxLayout *PageNotice::makeButtons()
{
    auto *reload = new QPushButton(texts::tr("Reload"), this);
    connect(reload, &QPushButton::clicked, this, &PageNotice::reloadRequested);
    connect(m_leave, &QPushButton::clicked, this, &PageNotice::closeRequested);
    setFocusProxy(reload);

    auto *row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(reload);
    row->addWidget(m_leave);
    row->addStretch();
    return row;
}

} // namespace helio
