#pragma once

#include <QLabel>
#include <QTimer>
#include <QWidget>

namespace programs {

class Recording;

/// Shows that the screen is recorded and for how long. A click on its button, or Escape, Enter or
/// the space bar, stops the recording; so does closing it.
class RecorderWindow : public QWidget
{
    Q_OBJECT

public:
    explicit RecorderWindow(Recording &recording);

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void showTime();

    Recording &m_recording;
    QLabel m_time;
    QTimer m_clock;
};

} // namespace programs
