#pragma once

#include <vector>

#include <QString>

#include "programs/missingfonts/common/fontusage.h"

namespace standin {

/// The font families that some text of a document is set in, without those that it carries itself.
/// What kind of document it is shows its content, not its name.
/// @throws DocumentError when it cannot be read or is of no known kind
std::vector<UsedFamily> documentFonts(const QString &path);

} // namespace standin
