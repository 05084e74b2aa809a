#pragma once

#include "helio/webengine/pagesurroundings.h"

namespace shell {

struct ShellOptions;

/// The theme and language of the desktop, or those that the options name instead.
helio::PageSurroundings desktopLook(const ShellOptions &options);

/// The program's title in a language such as "zh_CN".
QString programTitle(const QString &language);

/// Translates Qt's own texts, such as those of file dialogs.
void translateQt(const QString &language);

} // namespace shell
