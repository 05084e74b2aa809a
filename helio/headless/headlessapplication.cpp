#include "helio/headless/headlessapplication.h"

#include <QtPlugin>

Q_IMPORT_PLUGIN(HeadlessThemePlugin)

namespace {

char platformOption[] = "-platform";
char offscreenName[] = "offscreen";
char themeOption[] = "-platformtheme";
char headlessName[] = "helio-headless";

QtMessageHandler usualHandler = nullptr;

void passOnButTheRuntimeDirectory(QtMsgType type, const QMessageLogContext &context,
                                  const QString &message)
{
    if (!message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        usualHandler(type, context, message);
}

} // namespace

namespace helio {

HeadlessApplication::Arguments::Arguments(char *programName)
    : values{programName, platformOption, offscreenName, themeOption, headlessName, nullptr},
      count(static_cast<int>(values.size()) - 1)
{
}

HeadlessApplication::Arguments &HeadlessApplication::arguments(char *programName)
{
    // The application object keeps references to its arguments.
    static Arguments arguments(programName);
    return arguments;
}

HeadlessApplication::HeadlessApplication(char *programName)
    : HeadlessApplication(arguments(programName), QuietStart())
{
}

// Before it reads its arguments, Qt looks for a display server's socket in the user's runtime
// directory, which containers and background jobs do not have.
HeadlessApplication::QuietStart::QuietStart()
{
    usualHandler = qInstallMessageHandler(passOnButTheRuntimeDirectory);
}

HeadlessApplication::QuietStart::~QuietStart()
{
    qInstallMessageHandler(usualHandler);
}

HeadlessApplication::HeadlessApplication(Arguments &arguments, const QuietStart &)
    : QApplication(arguments.count, arguments.values.data())
{
    setQuitOnLastWindowClosed(false);
}

} // namespace helio
