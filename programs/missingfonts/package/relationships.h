#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace programs {

class ArchivePackage;
class XmlElement;

/// The relationships among the parts of a package. Their types are given by the last step of the
/// type's address, such as "styles": the transitional and the strict form differ before it.
class Relationships
{
public:
    /// Reads all relationships of the package in one pass.
    /// @throws DocumentError as the package does
    explicit Relationships(ArchivePackage &package);

    /// The parts that @p source (empty: the package) has a relationship of these types to, in the
    /// order of the types. Only the types that lead to fonts are known.
    std::vector<std::string> targets(const std::string &source,
                                     std::initializer_list<std::string_view> types) const;

    /// The first of that type; empty when there is none.
    std::string target(const std::string &source, std::string_view type) const;

private:
    struct Link
    {
        std::string_view type;
        std::string target;
    };

    void add(const std::string &source, const XmlElement &relationship);

    std::unordered_map<std::string, std::vector<Link>> m_links;
    int m_count = 0;
};

} // namespace programs
