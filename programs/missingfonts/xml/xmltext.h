#pragma once

#include <string>
#include <string_view>

namespace standin {

/// Appends character data with its entities resolved; only XML's own five and numbers are known.
/// @throws DocumentError for any other entity
void appendXmlText(std::string &target, std::string_view text);

/// Where a text that goes on can be cut without cutting a character or an entity.
std::size_t safeTextCut(std::string_view text);

} // namespace standin
