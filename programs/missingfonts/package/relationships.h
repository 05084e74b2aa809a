#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace standin {

class ArchivePackage;

/// What one part of a package is to another; the types that lead to fonts.
enum class Relation : std::uint8_t {
    Other,
    OfficeDocument,
    Chart,
    Comments,
    DiagramDrawing,
    Drawing,
    Endnotes,
    FontTable,
    Footer,
    Footnotes,
    Header,
    NotesMaster,
    NotesSlide,
    Numbering,
    Settings,
    SharedStrings,
    Slide,
    SlideLayout,
    SlideMaster,
    Styles,
    Theme,
    Worksheet
};

/// The relationships among the parts of a package.
class Relationships
{
public:
    /// Reads all relationships of the package in one pass.
    /// @throws DocumentError as the package does
    explicit Relationships(ArchivePackage &package);

    /// The parts that @p source (empty: the package) has a relationship of that type to.
    std::vector<std::string> targets(const std::string &source, Relation type) const;

    /// The first of them; empty when there is none.
    std::string target(const std::string &source, Relation type) const;

private:
    friend class RelationshipsHandler;

    struct Link
    {
        Relation type;
        std::string target;
    };

    std::unordered_map<std::string, std::vector<Link>> m_links;
    int m_count = 0;
};

} // namespace standin
