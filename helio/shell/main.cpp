#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QIcon>
#include <QLoggingCategory>
#include <QStandardPaths>
#include <QUrl>

#include <cstdio>
#include <memory>
#include <optional>

#include <unistd.h>

#include "helio/doctor/doctoroperations.h"
#include "helio/runtime/configuration.h"
#include "helio/runtime/pluginlibrary.h"
#include "helio/runtime/processes/awaitedprograms.h"
#include "helio/runtime/processes/runningprocess.h"
#include "helio/runtime/processes/terminationsignals.h"
#include "helio/runtime/suitehome.h"
#include "helio/shell/assistantwindow.h"
#include "helio/shell/chromiumarguments.h"
#include "helio/shell/desktoplook.h"
#include "helio/shell/filequestions.h"
#include "helio/shell/keptdraft.h"
#include "helio/shell/missingparts.h"
#include "helio/shell/sessioninstance.h"
#include "helio/shell/shelloptions.h"
#include "helio/shell/startvariables.h"
#include "helio/shell/window/windowpicture.h"
#include "helio/webengine/webenginebrowsers.h"
#include "qtversion/qtversion.h"
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

/// The page that the hidden child page shows first; empty if the application has none.
QString waitingPage(const helio::PageDirectory &pages)
{
    const QString name = QStringLiteral("waiting.html");
    return pages.contains(pages.urlOf(name)) ? name : QString();
}

/// Takes a picture of the window and then ends the program; a failure sets the exit status.
void takePicture(shell::AssistantWindow *window, const QString &path)
{
    auto *picture = new shell::WindowPicture(window, window->mainBrowser(), path);
    QObject::connect(picture, &shell::WindowPicture::finished, qApp, [](const QString &fault) {
        QCoreApplication::exit(fault.isEmpty() ? Ended : complain(NoPicture, fault));
    });
}

/// What takes pictures and drives pages wants a window of its own, as it is at the first start.
bool isForUser(const shell::ShellOptions &options)
{
    return options.screenshot.isEmpty() && options.debugPort == 0;
}

shell::WindowMemory memoryFor(const shell::ShellOptions &options)
{
    const QString directory =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return shell::WindowMemory(isForUser(options)
                                   ? directory + QStringLiteral("/office-assistant/window.ini")
                                   : QString());
}

QString draftFile()
{
    // Qt 5 has no name for this place.
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    return (state.startsWith(QLatin1Char('/'))
                ? state
                : QDir::homePath() + QStringLiteral("/.local/state")) +
           QStringLiteral("/office-assistant/feedback-draft.json");
}

/// Where the administrator wants feedback to be sent: a mail or web address of helio.ini.
QString feedbackAddress()
{
    const QString address = helio::setting(QStringLiteral("feedbackAddress"), {});
    const QString scheme = QUrl(address).scheme();
    return scheme == QLatin1String("mailto") || scheme == QLatin1String("https") ? address
                                                                                 : QString();
}

/// @p window is there once a page calls.
helio::PageOperations operationsOf(const std::unique_ptr<shell::AssistantWindow> &window,
                                   shell::KeptDraft &draft)
{
    return {
        {QStringLiteral("draft.keep"),
         [&draft](const QJsonObject &text) { return draft.keep(text); }},
        {QStringLiteral("draft.picture"),
         [&draft](const QJsonObject &picture) { return draft.keepPicture(picture); }},
        {QStringLiteral("draft.receiver"),
         [](const QJsonObject &) {
             return QJsonObject{{QStringLiteral("address"), feedbackAddress()}};
         }},
        {QStringLiteral("draft.write"),
         [](const QJsonObject &) {
             const QString address = feedbackAddress();
             return QJsonObject{{QStringLiteral("opened"),
                                 !address.isEmpty() && QDesktopServices::openUrl(QUrl(address))}};
         }},
        {QStringLiteral("draft.read"), [&draft](const QJsonObject &) { return draft.read(); }},
        {QStringLiteral("window.action"),
         [&window](const QJsonObject &) { return window->takeAction(); }},
        {QStringLiteral("window.expect"),
         [&window](const QJsonObject &) { return window->expectView(); }},
        {QStringLiteral("window.find"),
         [&window](const QJsonObject &) {
             window->present(QStringLiteral("find"));
             return window->state();
         }},
        {QStringLiteral("window.leave"),
         [&window](const QJsonObject &view) { return window->leaveView(view); }},
        {QStringLiteral("window.maximise"),
         [&window](const QJsonObject &) { return window->toggleMaximised(); }},
        {QStringLiteral("window.sidebar"),
         [&window](const QJsonObject &widths) { return window->useSidebar(widths); }},
        {QStringLiteral("window.state"),
         [&window](const QJsonObject &) { return window->state(); }},
    };
}

/// Each would override or drop the arguments that this program gives Chromium.
QByteArrayList variablesOfChromium()
{
    return {"QTWEBENGINE_CHROMIUM_FLAGS", "QTWEBENGINE_REMOTE_DEBUGGING",
            "QTWEBENGINE_DISABLE_SANDBOX"};
}

shell::StartVariables::Values variablesToStartWith(bool isDrawnByProcessor)
{
    auto values =
        isDrawnByProcessor ? shell::processorVariables() : shell::StartVariables::Values();
    // Without it a screen reader finds nothing in the pages.
    values.emplace_back("QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "1");
    return values;
}

int showWindow(const shell::ShellOptions &options, const shell::SessionInstance &instance,
               std::optional<shell::StartVariables> &variables)
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
    helio::DoctorOperations doctor(QCoreApplication::applicationDirPath() +
                                   QStringLiteral("/checks"));
    helio::TaskOperations tasks(
        {QCoreApplication::applicationDirPath(), shell::askForFile, shell::openFile});
    shell::KeptDraft draft(draftFile());
    std::unique_ptr<shell::AssistantWindow> window;
    const helio::WebEngineBrowsers browsers(pages, look, storageDirectory(), {&doctor, &tasks},
                                            operationsOf(window, draft));
    window = std::make_unique<shell::AssistantWindow>(options.page, waitingPage(pages),
                                                      memoryFor(options));
    variables.reset();
    // Unlike exit(), quit() first asks every window of Qt 6's programs, and ours refuses to close.
    QObject::connect(window.get(), &shell::AssistantWindow::endRequested, qApp,
                     [] { QCoreApplication::exit(); });
    if (!options.screenshot.isEmpty())
        takePicture(window.get(), options.screenshot);
    QObject::connect(&instance, &shell::SessionInstance::activated, window.get(),
                     &shell::AssistantWindow::present);
    window->present(options.action);
    const int status = QCoreApplication::exec();
    helio::endAwaitedPrograms();
    window.reset();
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

int runApplication(const shell::ShellOptions &options, const char *programName)
{
    const bool isRoot = ::geteuid() == 0;
    if (isRoot)
        complain(Ended, QStringLiteral("running as root, so Chromium runs without its sandbox"));
    const bool isDrawnByProcessor = shell::isDrawnByProcessor(options.graphics);
    std::optional<shell::StartVariables> variables(std::in_place, variablesOfChromium(),
                                                   variablesToStartWith(isDrawnByProcessor));
    shell::ChromiumArguments chromium(programName, options.debugPort, isRoot);
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    qtversion::scaleWithScreens();
    // Qt warns that OpenGL is missing, which is as asked for.
    if (isDrawnByProcessor)
        QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    QApplication application(chromium.count(), chromium.values());
    // Chromium of Qt 6 lists what it draws with when the first page is made.
    QLoggingCategory::setFilterRules(
        isDrawnByProcessor ? QStringLiteral("qt.webenginecontext=false") : QString());
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(QStringLiteral("org.officeassistant.officeassistant"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/shell/icon.png")));

    const helio::TerminationSignals terminationSignals(helio::signalAwaitedGroups);
    QObject::connect(&terminationSignals, &helio::TerminationSignals::received, qApp,
                     [] { QCoreApplication::exit(); });
    helio::makeDefaultSuiteHome();
    shell::SessionInstance instance;
    if (isForUser(options) &&
        instance.take(options.action) == shell::SessionInstance::Place::Second)
        return Ended;
    return showWindow(options, instance, variables);
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
