#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "programs/missingfonts/common/fontset.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

/// The two font collections of a theme, read from its part.
class ThemeFonts : public XmlHandler
{
public:
    explicit ThemeFonts(FontUsage &usage) : m_usage(usage) {}

    /// What a reference to a theme font means; any other family is returned unchanged.
    /// @p language ("zh-CN") chooses among the fonts for a language where the theme leaves the
    /// East Asian or complex font empty.
    Family resolved(Family family, std::string_view language = {}) const;

    /// The Latin font of a collection; @p member instead if that is another of its fonts, for any
    /// language. Spreadsheets write which font of the collection they mean.
    Family collectionFont(bool major, Family member) const;

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;

private:
    struct Collection
    {
        FontSet fonts;
        std::unordered_map<std::string, Family> byScript;
    };

    void readFont(const XmlElement &element, Collection &collection);

    FontUsage &m_usage;
    Collection m_major;
    Collection m_minor;
    Collection *m_current = nullptr;
    bool m_inScheme = false;
};

} // namespace programs
