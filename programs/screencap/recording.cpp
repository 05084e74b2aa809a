#include "programs/screencap/recording.h"

#include <QDateTime>
#include <QDir>
#include <QTimer>

#include <csignal>

#include "texts/texts.h"

namespace programs {

namespace {

constexpr char program[] = "gst-launch-1.0";
/// On a busy machine GStreamer's source may not hear for long that it is to end. A second interrupt
/// ends the program at once: what is recorded stays and plays, without an index.
constexpr int interruptAgainMs = 5'000;
constexpr int endTimeoutMs = 15'000;
/// Most recordings with the time of the same second.
constexpr int mostOfOneSecond = 100;

/// What follows the source of pictures and comes before the file's name. Smooth enough to follow
/// what happens, at a third of the work of 60 pictures a second.
QStringList encoder(bool hasSound)
{
    const QString sound = QStringLiteral("autoaudiosrc ! queue ! audioconvert ! audioresample "
                                         "! opusenc ! queue ! file. ");
    return QStringLiteral("! queue ! videorate ! video/x-raw,framerate=20/1 ! videoconvert "
                          "! vp8enc deadline=1 cpu-used=8 threads=2 target-bitrate=4000000 "
                          "keyframe-max-dist=100 ! queue ! file. "
                          "%1webmmux name=file ! filesink buffer-mode=unbuffered")
        .arg(hasSound ? sound : QString())
        .split(QLatin1Char(' '));
}

QString lastError(const QByteArray &output)
{
    for (const QByteArray &line : output.split('\n')) {
        if (line.startsWith("ERROR"))
            return QString::fromLocal8Bit(line);
    }
    return texts::tr("the recorder ended by itself");
}

} // namespace

Recording::Recording(const QString &directory) : m_directory(directory)
{
    connect(&m_program, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(texts::tr("%1 is missing; install gstreamer1.0-tools and "
                             "gstreamer1.0-plugins-good")
                       .arg(QLatin1String(program)));
    });
    connect(&m_program, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this](int status, QProcess::ExitStatus how) {
                // It hears the first interrupt only; the second one kills it.
                const bool isWell =
                    m_isStopping && (how == QProcess::NormalExit ? status == 0 : status == SIGINT);
                finish(isWell ? QString() : lastError(m_program.readAllStandardError()));
            });
}

Recording::~Recording()
{
    m_program.kill();
    m_program.waitForFinished(endTimeoutMs);
}

void Recording::start(const ScreenSource &source, bool hasSound)
{
    m_clock.start();
    const QDir folder(m_directory);
    m_file.setFileTemplate(folder.filePath(QStringLiteral(".recording-XXXXXX.webm")));
    if (!folder.mkpath(QStringLiteral(".")) || !m_file.open()) {
        finish(texts::tr("cannot write to %1: %2").arg(m_directory, m_file.errorString()));
        return;
    }
    m_program.setStandardOutputFile(QProcess::nullDevice());
    m_program.setStandardInputFile(QProcess::nullDevice());
    // With "-e" an interrupt ends the stream, so that the file is whole.
    m_program.start(QLatin1String(program),
                    QStringList(QStringLiteral("-e")) + source.words + encoder(hasSound) +
                        QStringList(QStringLiteral("location=") + m_file.fileName()));
}

void Recording::stop()
{
    if (m_isStopping || m_program.state() == QProcess::NotRunning)
        return;
    m_isStopping = true;
    const auto interrupt = [this] {
        if (m_program.state() != QProcess::NotRunning)
            ::kill(static_cast<pid_t>(m_program.processId()), SIGINT);
    };
    interrupt();
    QTimer::singleShot(interruptAgainMs, &m_program, interrupt);
    QTimer::singleShot(endTimeoutMs, &m_program, &QProcess::kill);
    emit stopping();
}

void Recording::finish(const QString &reason)
{
    if (m_hasEnded)
        return;
    m_hasEnded = true;
    const QString file = keptFile();
    emit ended(file,
               file.isEmpty() && reason.isEmpty() ? texts::tr("nothing was recorded") : reason);
}

/// What was recorded before a fault is kept too.
QString Recording::keptFile()
{
    if (!m_file.isOpen() || QFileInfo(m_file.fileName()).size() == 0)
        return {};
    const QString name = QStringLiteral("recording-") +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
    for (int number = 1; number <= mostOfOneSecond; ++number) {
        const QString suffix = number > 1 ? QStringLiteral("-%1").arg(number) : QString();
        const QString path = QDir(m_directory).filePath(name + suffix + QStringLiteral(".webm"));
        if (QFile::exists(path) || !m_file.rename(path))
            continue;
        m_file.setAutoRemove(false);
        return path;
    }
    return {};
}

} // namespace programs
