#include <QApplication>
#include <QIcon>
#include <QStandardPaths>
#include <QUrl>

#include <cstdio>
#include <optional>

#include <unistd.h>

#include "helio/doctor/doctoroperations.h"
#include "helio/runtime/pluginlibrary.h"
#include "helio/runtime/processes/awaitedprograms.h"
#include "helio/runtime/processes/runningprocess.h"
#include "helio/runtime/processes/terminationsignals.h"
#include "helio/runtime/suitehome.h"
#include "helio/shell/assistantwindows.h"
#include "helio/shell/chromiumarguments.h"
#include "helio/shell/desktoplook.h"
#include "helio/shell/hiddenvariables.h"
#include "helio/shell/missingparts.h"
#include "helio/shell/sessioninstance.h"
#include "helio/shell/shelloptions.h"
#include "helio/shell/window/pagewindow.h"
#include "helio/shell/window/windowpicture.h"
#include "helio/webengine/webenginebrowsers.h"
#include "texts/encoding.h"
#include "texts/texts.h"

namespace {

enum ExitStatus {
    Ended = 0,
    NoPicture = 1,
    WrongUsage = 2,
    PartMissing = 3,
};

int complain(ExitStatus status, const QString &message)
{
    std::fprintf(stderr, "helio-shell: %s\n", message.toLocal8Bit().constData());
    return status;
}

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

QString storageDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/office-assistant/pages");
}

/// The page that the hidden child window shows first; empty if the application has none.
QString waitingPage(const helio::PageDirectory &pages)
{
    const QString name = QStringLiteral("waiting.html");
    return pages.contains(pages.urlOf(name)) ? name : QString();
}

/// Takes a picture of the window and then ends the program; a failure sets the exit status.
void takePicture(shell::PageWindow *window, const QString &path)
{
    auto *picture = new shell::WindowPicture(window, path, window);
    QObject::connect(picture, &shell::WindowPicture::finished, qApp, [](const QString &fault) {
        QCoreApplication::exit(fault.isEmpty() ? Ended : complain(NoPicture, fault));
    });
}

int showWindows(const shell::ShellOptions &options, const shell::SessionInstance &instance)
{
    const helio::PageSurroundings look = shell::desktopLook(options);
    shell::useLanguage(look.language);
    const helio::PageDirectory pages(helio::pageDirectory());
    const QString missing = shell::missingPart(pages, options.page);
    if (!missing.isEmpty())
        return complain(PartMissing, missing);
    helio::PluginLibrary library;
    const QString fault = library.load();
    if (!fault.isEmpty())
        return complain(PartMissing, fault);

    QApplication::setApplicationDisplayName(texts::tr("Office Assistant"));
    // Each would override or drop the arguments that this program gives Chromium.
    std::optional<shell::HiddenVariables> hidden(QByteArrayList{"QTWEBENGINE_CHROMIUM_FLAGS",
                                                                "QTWEBENGINE_REMOTE_DEBUGGING",
                                                                "QTWEBENGINE_DISABLE_SANDBOX"});
    helio::DoctorOperations doctor(QCoreApplication::applicationDirPath() +
                                   QStringLiteral("/checks"));
    const helio::WebEngineBrowsers browsers(pages, look, storageDirectory(), &doctor);
    shell::AssistantWindows windows(options.page, waitingPage(pages));
    hidden.reset();
    QObject::connect(&windows, &shell::AssistantWindows::endRequested, qApp,
                     &QCoreApplication::quit);
    if (!options.screenshot.isEmpty())
        takePicture(windows.mainWindow(), options.screenshot);
    QObject::connect(&instance, &shell::SessionInstance::activated, &windows,
                     &shell::AssistantWindows::present);
    windows.present();
    const int status = QCoreApplication::exec();
    helio::endAwaitedPrograms();
    return status;
}

int printText(shell::ShellOptions::Mode mode, int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QString text = mode == shell::ShellOptions::PrintHelp
                             ? shell::shellHelp()
                             : QStringLiteral("helio-shell " ASSISTANT_VERSION "\n");
    std::fputs(text.toLocal8Bit().constData(), stdout);
    return Ended;
}

/// What takes pictures and drives pages wants a window of its own.
bool isForUser(const shell::ShellOptions &options)
{
    return options.screenshot.isEmpty() && options.debugPort == 0;
}

int runApplication(const shell::ShellOptions &options, const char *programName)
{
    const bool isRoot = ::geteuid() == 0;
    if (isRoot)
        complain(Ended, QStringLiteral("running as root, so Chromium runs without its sandbox"));
    shell::ChromiumArguments chromium(programName, options.debugPort, isRoot);
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(chromium.count(), chromium.values());
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(QStringLiteral("org.officeassistant.officeassistant"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/shell/icon.png")));

    const helio::TerminationSignals terminationSignals(helio::signalAwaitedGroups);
    QObject::connect(&terminationSignals, &helio::TerminationSignals::received, qApp,
                     &QCoreApplication::quit);
    helio::makeDefaultSuiteHome();
    shell::SessionInstance instance;
    if (isForUser(options) && instance.take() == shell::SessionInstance::Place::Second)
        return Ended;
    return showWindows(options, instance);
}

} // namespace

int main(int argc, char *argv[])
{
    texts::assumeUtf8WithoutLocale();
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));

    const shell::ShellOptions options = shell::parseShellOptions(arguments);
    if (!options.fault.isEmpty())
        return complain(WrongUsage, options.fault);
    if (options.mode != shell::ShellOptions::ShowWindow)
        return printText(options.mode, argc, argv);
    if (!hasDisplay())
        return complain(PartMissing, QStringLiteral("there is no display to show a window on"));
    return runApplication(options, argv[0]);
}
