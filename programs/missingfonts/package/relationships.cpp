#include "programs/missingfonts/package/relationships.h"

#include <string_view>
#include <utility>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/package/archivepackage.h"
#include "programs/missingfonts/package/partname.h"
#include "programs/missingfonts/xml/xmlelement.h"
#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

namespace {

/// The last step of a type's address: the transitional and the strict form differ before it.
constexpr std::pair<std::string_view, Relation> types[] = {
    {"officeDocument", Relation::OfficeDocument},
    {"chart", Relation::Chart},
    {"comments", Relation::Comments},
    {"diagramDrawing", Relation::DiagramDrawing},
    {"drawing", Relation::Drawing},
    {"endnotes", Relation::Endnotes},
    {"fontTable", Relation::FontTable},
    {"footer", Relation::Footer},
    {"footnotes", Relation::Footnotes},
    {"header", Relation::Header},
    {"notesMaster", Relation::NotesMaster},
    {"notesSlide", Relation::NotesSlide},
    {"numbering", Relation::Numbering},
    {"settings", Relation::Settings},
    {"sharedStrings", Relation::SharedStrings},
    {"slide", Relation::Slide},
    {"slideLayout", Relation::SlideLayout},
    {"slideMaster", Relation::SlideMaster},
    {"styles", Relation::Styles},
    {"theme", Relation::Theme},
    {"worksheet", Relation::Worksheet},
    {"chartsheet", Relation::Worksheet},
    {"dialogsheet", Relation::Worksheet},
    {"xlMacrosheet", Relation::Worksheet},
};

Relation relationOf(std::string_view address)
{
    const std::string_view last = address.substr(address.rfind('/') + 1);
    for (const auto &[name, relation] : types) {
        if (last == name)
            return relation;
    }
    return Relation::Other;
}

} // namespace

/// Collects the relationships of one part.
class RelationshipsHandler : public XmlHandler
{
public:
    RelationshipsHandler(Relationships &relationships, std::string owner)
        : m_relationships(relationships), m_owner(std::move(owner))
    {
    }

    bool startElement(const XmlElement &element) override
    {
        if (element.tag() != Tag::PackageRelationship)
            return true;
        const Relation type = relationOf(element.attribute(Vocabulary::None, "Type"));
        if (type == Relation::Other ||
            element.attribute(Vocabulary::None, "TargetMode") == "External")
            return true;
        std::string target = targetPartName(m_owner, element.attribute(Vocabulary::None, "Target"));
        if (target.empty())
            return true;
        if (++m_relationships.m_count > limits::relationships)
            throw DocumentError("the document's package has too many relationships");
        m_relationships.m_links[m_owner].push_back({type, std::move(target)});
        return true;
    }

private:
    Relationships &m_relationships;
    std::string m_owner;
};

Relationships::Relationships(ArchivePackage &package)
{
    const auto isWanted = [](const std::string &name) {
        bool wanted = false;
        relationshipsOwner(name, wanted);
        return wanted;
    };
    package.visit(isWanted, [this](PackagePart &part) {
        bool isRelationships = false;
        RelationshipsHandler handler(*this, relationshipsOwner(part.name(), isRelationships));
        part.read(handler);
    });
}

std::vector<std::string> Relationships::targets(const std::string &source, Relation type) const
{
    std::vector<std::string> result;
    const auto links = m_links.find(source);
    if (links == m_links.end())
        return result;
    for (const Link &link : links->second) {
        if (link.type == type)
            result.push_back(link.target);
    }
    return result;
}

std::string Relationships::target(const std::string &source, Relation type) const
{
    const std::vector<std::string> all = targets(source, type);
    return all.empty() ? std::string() : all.front();
}

} // namespace standin
