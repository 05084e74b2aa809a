#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>

#include <dlfcn.h>

#include "programs/screengrab/grabrun.h"

namespace {

/// Longer than the program waits for the portal.
constexpr int timeoutMs = 90'000;

const QString programName = QStringLiteral("/screengrab");

/// The directory of this library.
QString ownDirectory()
{
    Dl_info info = {};
    static const char inThisLibrary = 0;
    if (::dladdr(&inThisLibrary, &info) == 0 || !info.dli_fname)
        return {};
    return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
}

void takeScreenshot()
{
    const programs::GrabRun run = programs::runGrabProgram(ownDirectory() + programName, timeoutMs);
    if (run.picture.isEmpty())
        qWarning("no screenshot was taken: %s", qUtf8Printable(run.reason));
    else
        QGuiApplication::clipboard()->setImage(QImage(run.picture));
}

} // namespace

/// Saves a screenshot in the user's pictures folder and copies it to the clipboard. Call it on the
/// GUI thread; a nested call does nothing.
extern "C" __attribute__((visibility("default"))) void screenShot()
{
    static bool isRunning = false;
    if (isRunning || !qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return;
    isRunning = true;
    takeScreenshot();
    isRunning = false;
}
