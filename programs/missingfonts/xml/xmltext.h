#pragma once

#include <string>
#include <string_view>

namespace programs {

/// Appends character data with its entities resolved; only XML's own five and character numbers are
/// known.
/// @throws DocumentError for any other entity
void appendXmlText(std::string &target, std::string_view text);

/// The longest beginning of an unfinished text that ends neither inside a character nor an entity.
std::size_t safeTextCut(std::string_view text);

} // namespace programs
