#include "programs/missingfonts/xml/xmlnames.h"

#include <utility>

namespace programs {

namespace {

constexpr std::pair<std::string_view, Vocabulary> vocabularies[] = {
    {"http://schemas.openxmlformats.org/wordprocessingml/2006/main", Vocabulary::Word},
    {"http://purl.oclc.org/ooxml/wordprocessingml/main", Vocabulary::Word},
    {"http://schemas.openxmlformats.org/drawingml/2006/main", Vocabulary::Drawing},
    {"http://purl.oclc.org/ooxml/drawingml/main", Vocabulary::Drawing},
    {"http://schemas.openxmlformats.org/spreadsheetml/2006/main", Vocabulary::Sheet},
    {"http://purl.oclc.org/ooxml/spreadsheetml/main", Vocabulary::Sheet},
    {"http://schemas.openxmlformats.org/presentationml/2006/main", Vocabulary::Presentation},
    {"http://purl.oclc.org/ooxml/presentationml/main", Vocabulary::Presentation},
    {"http://schemas.openxmlformats.org/drawingml/2006/chart", Vocabulary::Chart},
    {"http://purl.oclc.org/ooxml/drawingml/chart", Vocabulary::Chart},
    {"http://schemas.openxmlformats.org/officeDocument/2006/math", Vocabulary::Math},
    {"http://purl.oclc.org/ooxml/officeDocument/math", Vocabulary::Math},
    {"http://schemas.openxmlformats.org/package/2006/relationships",
     Vocabulary::PackageRelationships},
    {"http://schemas.openxmlformats.org/markup-compatibility/2006", Vocabulary::Compatibility},
};

} // namespace

Vocabulary vocabularyOf(std::string_view namespaceUri)
{
    for (const auto &[uri, vocabulary] : vocabularies) {
        if (uri == namespaceUri)
            return vocabulary;
    }
    return Vocabulary::Other;
}

} // namespace programs
