#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>

#include <dlfcn.h>

#include "programs/screengrab/grabrun.h"

namespace {

/// Longer than the program waits for the user's answer to the desktop's question.
constexpr int timeoutMs = 90'000;

const QString programName = QStringLiteral("/screengrab");

/// The directory that this library was loaded from.
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
    const standin::GrabRun run = standin::runGrabProgram(ownDirectory() + programName, timeoutMs);
    if (run.picture.isEmpty())
        qWarning("no screenshot was taken: %s", qUtf8Printable(run.reason));
    else
        QGuiApplication::clipboard()->setImage(QImage(run.picture));
}

} // namespace

/// Saves a picture of the screen in the user's pictures folder and puts it on the clipboard. To be
/// called on the GUI thread; a call from within a call does nothing.
extern "C" __attribute__((visibility("default"))) void screenShot()
{
    static bool isRunning = false;
    if (isRunning || !qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return;
    isRunning = true;
    takeScreenshot();
    isRunning = false;
}
