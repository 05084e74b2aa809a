#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QSocketNotifier>
#include <QStandardPaths>

#include <csignal>
#include <cstdio>

#include <unistd.h>

#include "programs/notice/desktopnotice.h"
#include "programs/notice/sessionbus.h"
#include "programs/screencap/portalcast.h"
#include "programs/screencap/recorderwindow.h"
#include "programs/screencap/recording.h"
#include "texts/texts.h"

using namespace programs;

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;
/// Includes the user's time to answer the portal's question.
constexpr int answerTimeoutMs = 60'000;

int signalPipe[2] = {-1, -1};

extern "C" void noteSignal(int)
{
    const ssize_t written = ::write(signalPipe[1], "", 1);
    static_cast<void>(written);
}

bool isWayland()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qgetenv("XDG_SESSION_TYPE") == "wayland";
}

/// In a Wayland session the X server does not see the screen.
ScreenSource screenSource()
{
    if (!isWayland())
        return {{QStringLiteral("ximagesrc"), QStringLiteral("use-damage=false")}, -1, {}};
    if (!hasSessionBus())
        return {{}, -1, texts::tr("this session has no portal for recordings")};
    return PortalCast(QDBusConnection::sessionBus(), answerTimeoutMs).open();
}

QString videoDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
}

int tell(const QString &title, const QString &text, bool isFault)
{
    std::fprintf(isFault ? stderr : stdout, "%s\n", QFile::encodeName(text).constData());
    std::fflush(stdout);
    if (hasSessionBus())
        showNotice(QDBusConnection::sessionBus(), title, text);
    return isFault ? failed : 0;
}

int record(const ScreenSource &source, bool hasSound)
{
    Recording recording(videoDirectory());
    int status = 0;
    const auto atEnd = [&status](const QString &file, const QString &reason) {
        if (file.isEmpty())
            status = tell(texts::tr("Nothing was recorded"), reason, true);
        else if (!reason.isEmpty())
            status = tell(texts::tr("The recording ended early"),
                          QStringLiteral("%1: %2").arg(file, reason), true);
        else
            status = tell(texts::tr("Recording saved"), file, false);
        // The event loop may not run yet. With Qt 6, quit() asks the window, which refuses to
        // close.
        QMetaObject::invokeMethod(
            qApp, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
    };
    QObject::connect(&recording, &Recording::ended, atEnd);
    QSocketNotifier signal(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(&signal, &QSocketNotifier::activated, &recording, [&] {
        // The byte stays in the pipe, so the notifier would fire until the end.
        signal.setEnabled(false);
        recording.stop();
    });
    recording.start(source, hasSound);
    RecorderWindow window(recording);
    window.show();
    window.activateWindow();
    QApplication::exec();
    return status;
}

} // namespace

/// Records the screen from its start until it is stopped by its window or a signal, saves a WebM in
/// the user's videos folder and prints its path. "--sound" records sound too.
int main(int argc, char *argv[])
{
    texts::useLanguageOfUser();
    const QString title = texts::tr("Nothing was recorded");
    // Without a display QApplication would abort.
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return tell(title, texts::tr("this session has no display"), true);
    if (::pipe(signalPipe) != 0)
        return failed;
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, noteSignal);
    const QApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments().mid(1);
    const bool hasSound = words == QStringList(QStringLiteral("--sound"));
    if (!words.isEmpty() && !hasSound) {
        std::fputs("usage: screencap [--sound]\n", stderr);
        return wrongUsage;
    }
    QLockFile lock(QDir(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation))
                       .filePath(QStringLiteral("office-assistant-recording.lock")));
    lock.setStaleLockTime(0);
    if (!lock.tryLock())
        return tell(title, texts::tr("a recording is under way already"), true);
    const ScreenSource source = screenSource();
    return source.words.isEmpty() ? tell(title, source.reason, true) : record(source, hasSound);
}
