#include "programs/missingfonts/package/relationships.h"

#include <algorithm>
#include <array>
#include <functional>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/package/archivepackage.h"
#include "programs/missingfonts/package/partname.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

namespace {

/// The types that lead to fonts.
constexpr std::array<std::string_view, 24> knownTypes = {
    "officeDocument", "chart",       "chartsheet", "comments", "diagramDrawing", "dialogsheet",
    "drawing",        "endnotes",    "fontTable",  "footer",   "footnotes",      "header",
    "notesMaster",    "notesSlide",  "numbering",  "settings", "sharedStrings",  "slide",
    "slideLayout",    "slideMaster", "styles",     "theme",    "worksheet",      "xlMacrosheet"};

/// Hands each relationship of one part on.
class RelationshipsHandler : public XmlHandler
{
public:
    using Take = std::function<void(const XmlElement &relationship)>;

    explicit RelationshipsHandler(Take take) : m_take(std::move(take)) {}

    bool startElement(const XmlElement &element) override
    {
        if (element.tag() == tagOf(Vocabulary::PackageRelationships, "Relationship"))
            m_take(element);
        return true;
    }

private:
    Take m_take;
};

} // namespace

Relationships::Relationships(ArchivePackage &package)
{
    package.visit([](const std::string &name) { return relationshipsOwner(name).has_value(); },
                  [this](PackagePart &part) {
                      const std::string source = *relationshipsOwner(part.name());
                      RelationshipsHandler handler(
                          [&](const XmlElement &relationship) { add(source, relationship); });
                      part.read(handler);
                  });
}

void Relationships::add(const std::string &source, const XmlElement &relationship)
{
    const std::string address = relationship.attribute(Vocabulary::None, "Type");
    const std::string_view last = std::string_view(address).substr(address.rfind('/') + 1);
    const auto type = std::find(knownTypes.begin(), knownTypes.end(), last);
    if (type == knownTypes.end() ||
        relationship.attribute(Vocabulary::None, "TargetMode") == "External")
        return;
    std::string target = targetPartName(source, relationship.attribute(Vocabulary::None, "Target"));
    if (target.empty())
        return;
    if (++m_count > limits::relationships)
        throw DocumentError("the document's package has too many relationships");
    m_links[source].push_back({*type, std::move(target)});
}

std::vector<std::string> Relationships::targets(const std::string &source,
                                                std::initializer_list<std::string_view> types) const
{
    std::vector<std::string> result;
    const auto links = m_links.find(source);
    if (links == m_links.end())
        return result;
    for (const std::string_view type : types) {
        for (const Link &link : links->second) {
            if (link.type == type)
                result.push_back(link.target);
        }
    }
    return result;
}

std::string Relationships::target(const std::string &source, std::string_view type) const
{
    const std::vector<std::string> all = targets(source, {type});
    return all.empty() ? std::string() : all.front();
}

} // namespace programs
