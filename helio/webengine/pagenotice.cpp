#include "helio/webengine/pagenotice.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include "helio/webengine/pagesurroundings.h"

namespace {

constexpr int textWidth = 420;
constexpr double titleScale = 1.4;

} // namespace

namespace helio {

PageNotice::PageNotice(const PageSurroundings &surroundings, QWidget *parent)
    : QWidget(parent),
      m_texts(NoticeTexts::of(surroundings.language)),
      m_title(new QLabel(this)),
      m_explanation(new QLabel(this))
{
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
    // With a fixed width the label gets the height that its lines need.
    m_explanation->setFixedWidth(textWidth);
    auto *row = new QHBoxLayout(this);
    row->addStretch();
    row->addLayout(column);
    row->addStretch();
}

PageNotice *PageNotice::sayStopped()
{
    m_title->setText(m_texts.stoppedTitle);
    m_explanation->setText(m_texts.stoppedExplanation);
    return this;
}

PageNotice *PageNotice::sayNotShown(const QString &name)
{
    m_title->setText(m_texts.notShownTitle);
    m_explanation->setText(m_texts.notShownExplanation.arg(name));
    return this;
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
    auto *reload = new QPushButton(m_texts.reload, this);
    auto *close = new QPushButton(m_texts.close, this);
    reload->setShortcut(QKeySequence::Refresh);
    connect(reload, &QPushButton::clicked, this, &PageNotice::reloadRequested);
    connect(close, &QPushButton::clicked, this, &PageNotice::closeRequested);
    setFocusProxy(reload);

    auto *row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(reload);
    row->addWidget(close);
    row->addStretch();
    return row;
}

} // namespace helio
