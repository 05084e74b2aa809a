#pragma once

#include "programs/missingfonts/common/fontset.h"

namespace programs {

class XmlElement;

/// Takes over what a w:rFonts element says.
void readRunFonts(const XmlElement &element, FontSet &fonts, FontUsage &usage);

} // namespace programs
