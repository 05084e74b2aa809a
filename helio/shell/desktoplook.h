#pragma once

#include "helio/webengine/pagesurroundings.h"

namespace shell {

struct ShellOptions;

/// The theme and language of the desktop, or those that the options name instead.
helio::PageSurroundings desktopLook(const ShellOptions &options);

/// Translates what the window itself shows to a language like "zh_CN", and the texts of Qt, such as
/// those of file dialogs.
void useLanguage(const QString &language);

} // namespace shell
