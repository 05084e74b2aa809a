#pragma once

#include "helio/webengine/pagesurroundings.h"

namespace shell {

struct ShellOptions;

/// Theme and language of the desktop, unless the options name others.
helio::PageSurroundings desktopLook(const ShellOptions &options);

/// What the program is called in a language like "zh_CN".
QString programTitle(const QString &language);

/// Translates the texts that Qt itself shows, such as those of file dialogs.
void translateQt(const QString &language);

} // namespace shell
