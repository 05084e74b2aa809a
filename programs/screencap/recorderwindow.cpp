#include "programs/screencap/recorderwindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>

#include "programs/screencap/recording.h"
#include "texts/texts.h"

namespace programs {

namespace {

constexpr int second = 1000;
constexpr int margin = 16;

} // namespace

RecorderWindow::RecorderWindow(Recording &recording)
    : QWidget(nullptr, Qt::Window | Qt::WindowStaysOnTopHint), m_recording(recording)
{
    setWindowTitle(texts::tr("Recording the screen"));
    auto *stop = new QPushButton(texts::tr("Stop"));
    const QString saving = texts::tr("Saving");
    m_time.setMinimumWidth(m_time.fontMetrics().horizontalAdvance(saving));
    auto *layout = new QHBoxLayout(this);
    // Its size stays while the text changes.
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    layout->addWidget(&m_time);
    layout->addWidget(stop);
    connect(stop, &QPushButton::clicked, &m_recording, &Recording::stop);
    connect(&m_recording, &Recording::stopping, this, [this, stop, saving] {
        m_clock.stop();
        m_time.setText(saving);
        stop->setEnabled(false);
    });
    connect(&m_clock, &QTimer::timeout, this, &RecorderWindow::showTime);
    m_clock.start(second);
    showTime();
    stop->setFocus();
    adjustSize();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    move(screen.right() - width() - margin, screen.top() + margin);
}

void RecorderWindow::showTime()
{
    const qint64 seconds = m_recording.seconds();
    m_time.setText(QStringLiteral("<span style=\"color:#c00\">●</span> %1:%2")
                       .arg(seconds / 60)
                       .arg(seconds % 60, 2, 10, QLatin1Char('0')));
}

/// The window goes when the file is finished.
void RecorderWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    m_recording.stop();
}

void RecorderWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return ||
        event->key() == Qt::Key_Enter)
        m_recording.stop();
    else
        QWidget::keyPressEvent(event);
}

} // namespace programs
