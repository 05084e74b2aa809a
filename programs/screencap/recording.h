#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QProcess>
#include <QTemporaryFile>

#include "programs/screencap/screensource.h"

namespace programs {

/// A recording of the screen as a WebM, under way from start() until ended().
class Recording : public QObject
{
    Q_OBJECT

public:
    explicit Recording(const QString &directory);
    /// Ends the program, if it still runs.
    ~Recording() override;

    /// @p hasSound records what the desktop's default source of sound gives, such as a microphone.
    void start(const ScreenSource &source, bool hasSound);
    /// Has the file finished; ended() follows.
    void stop();
    qint64 seconds() const { return m_clock.elapsed() / 1000; }

signals:
    /// The file is being finished, which takes long on a busy machine.
    void stopping();
    /// @p file is empty where nothing was recorded; @p reason says what went wrong, if anything
    /// did.
    void ended(const QString &file, const QString &reason);

private:
    void finish(const QString &reason);
    QString keptFile();

    const QString m_directory;
    QTemporaryFile m_file;
    QProcess m_program;
    QElapsedTimer m_clock;
    bool m_isStopping = false;
    bool m_hasEnded = false;
};

} // namespace programs
