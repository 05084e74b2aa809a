#include <cstdio>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFile>
#include <QStandardPaths>

#include "programs/notice/desktopnotice.h"
#include "programs/notice/sessionbus.h"
#include "programs/screengrab/picturefile.h"
#include "programs/screengrab/portalgrab.h"
#include "programs/screengrab/x11grab.h"
#include "texts/texts.h"

using namespace programs;

namespace {

constexpr int failed = 1;
/// Includes the user's time to answer the portal's question for permission.
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
    // In a Wayland session the X server does not see the screen.
    if (isWayland())
        return GrabbedPicture::notPossible(
            picture.reason.isEmpty() ? texts::tr("this session has no portal for screenshots")
                                     : picture.reason);
    return grabX11();
}

void tell(const QString &title, const QString &text)
{
    if (hasSessionBus())
        showNotice(QDBusConnection::sessionBus(), title, text);
}

int fail(const QString &reason)
{
    std::fprintf(stderr, "%s\n", reason.toUtf8().constData());
    tell(texts::tr("No screenshot was taken"), reason);
    return failed;
}

} // namespace

/// Takes a screenshot, saves it in the user's pictures folder and prints its path.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    texts::useLanguageOfUser();
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
    tell(texts::tr("Screenshot saved"), file.path);
    return 0;
}
