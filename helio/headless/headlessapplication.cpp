#include "helio/headless/headlessapplication.h"

#include <QtPlugin>

Q_IMPORT_PLUGIN(HeadlessThemePlugin)

namespace {

char platformOption[] = "-platform";
char offscreenName[] = "offscreen";
char themeOption[] = "-platformtheme";
char headlessName[] = "helio-headless";

} // namespace

namespace helio {

HeadlessApplication::Arguments::Arguments(char *programName)
    : values{programName, platformOption, offscreenName, themeOption, headlessName, nullptr},
      count(static_cast<int>(values.size()) - 1)
{
}

HeadlessApplication::Arguments &HeadlessApplication::arguments(char *programName)
{
    // The application object refers to its arguments for as long as it lives.
    static Arguments arguments(programName);
    return arguments;
}

HeadlessApplication::HeadlessApplication(char *programName)
    : HeadlessApplication(arguments(programName))
{
}

HeadlessApplication::HeadlessApplication(Arguments &arguments)
    : QApplication(arguments.count, arguments.values.data())
{
    setQuitOnLastWindowClosed(false);
}

} // namespace helio
