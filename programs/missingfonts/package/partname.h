#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace programs {

bool endsWith(std::string_view text, std::string_view ending);

/// The name by which a package's part is looked up: no leading slash, ASCII letters in lower case,
/// percent-encoding decoded. Empty for a name that no part can have (it leads out of the package or
/// is too long).
std::string partName(std::string_view pathInPackage);

/// The part that a relationship's target means; @p source is the part that has the relationship,
/// empty for the package itself. Empty when it leads out of the package.
std::string targetPartName(const std::string &source, std::string_view target);

/// The part whose relationships a relationships part holds, "" for the package's own; none for
/// the name of any other part.
std::optional<std::string> relationshipsOwner(const std::string &name);

} // namespace programs
