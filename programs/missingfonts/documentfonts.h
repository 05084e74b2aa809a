#pragma once

#include <vector>

#include <QString>

#include "programs/missingfonts/common/fontusage.h"

namespace programs {

/// The font families that a document uses for its text, without the embedded ones. The kind of
/// document is recognised by content, not by name.
/// @throws DocumentError when it cannot be read or its kind is unknown
std::vector<UsedFamily> documentFonts(const QString &path);

} // namespace programs
