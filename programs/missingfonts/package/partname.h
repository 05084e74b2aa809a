#pragma once

#include <string>
#include <string_view>

namespace standin {

/// The name by which a package's part is looked up: no leading slash, ASCII letters in lower case,
/// what is percent-encoded decoded. Empty for a name that is no part's (it climbs out of the
/// package or is too long).
std::string partName(std::string_view pathInPackage);

/// The part that a relationship's target means; @p source is the part that has the relationship,
/// empty for the package itself. Empty when it leads out of the package.
std::string targetPartName(const std::string &source, std::string_view target);

/// The part whose relationships a relationships part holds; "" for the package's own.
/// @p isRelationships says whether @p name is a relationships part at all.
std::string relationshipsOwner(const std::string &name, bool &isRelationships);

} // namespace standin
