#include <cstdio>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFile>
#include <QLocale>
#include <QStandardPaths>

#include "programs/screengrab/desktopnotice.h"
#include "programs/screengrab/picturefile.h"
#include "programs/screengrab/portalgrab.h"
#include "programs/screengrab/sessionbus.h"
#include "programs/screengrab/x11grab.h"

using namespace standin;

namespace {

constexpr int failed = 1;
/// A portal may ask whether the assistant may see the screen.
constexpr int answerTimeoutMs = 60'000;

bool isWayland()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qgetenv("XDG_SESSION_TYPE") == "wayland";
}

GrabbedPicture grabScreen()
{
    GrabbedPicture picture;
    if (hasSessionBus())
        picture = PortalGrab(QDBusConnection::sessionBus(), answerTimeoutMs).grab();
    if (picture.outcome != GrabbedPicture::NotPossible)
        return picture;
    // The X server of a Wayland session shows nothing of what is on the screen.
    if (isWayland())
        return GrabbedPicture::notPossible(
            picture.reason.isEmpty() ? QStringLiteral("this session has no portal for screenshots")
                                     : picture.reason);
    return grabX11();
}

void tell(const char *english, const char *chinese, const QString &text)
{
    if (!hasSessionBus())
        return;
    const bool isChinese = QLocale::system().language() == QLocale::Chinese;
    showNotice(QDBusConnection::sessionBus(), QString::fromUtf8(isChinese ? chinese : english),
               text);
}

int fail(const QString &reason)
{
    std::fprintf(stderr, "%s\n", reason.toUtf8().constData());
    tell("No screenshot was taken", "未能截图", reason);
    return failed;
}

} // namespace

/// Takes a picture of the screen, saves it in the user's pictures folder and prints its path.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const GrabbedPicture picture = grabScreen();
    if (picture.outcome != GrabbedPicture::Taken)
        return fail(picture.reason);
    const PictureFile file =
        savePicture(picture, QStandardPaths::writableLocation(QStandardPaths::PicturesLocation),
                    QDateTime::currentDateTime());
    if (file.path.isEmpty())
        return fail(file.reason);
    std::printf("%s\n", QFile::encodeName(file.path).constData());
    std::fflush(stdout);
    tell("Screenshot saved", "截图已保存", file.path);
    return 0;
}
