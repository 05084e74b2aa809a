#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "programs/missingfonts/common/fontusage.h"
#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

/// The two font collections of a theme, read from its part.
class ThemeFonts : public XmlHandler
{
public:
    explicit ThemeFonts(FontUsage &usage) : m_usage(usage) {}

    /// What a reference to a theme font means; any other family stays what it is.
    /// @p language ("zh-CN") chooses among the fonts for a language where the theme leaves the
    /// East Asian or complex font empty.
    Family resolved(Family family, std::string_view language = {}) const;

    /// The Latin font of a collection; @p member is one of its other fonts, for any language, if
    /// the collection has it. Spreadsheets write which font of it they mean.
    Family collectionFont(bool major, Family member) const;

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;

private:
    struct Collection
    {
        Family latin = noFamily;
        Family eastAsian = noFamily;
        Family complex = noFamily;
        std::unordered_map<std::string, Family> byScript;
    };

    FontUsage &m_usage;
    Collection m_major;
    Collection m_minor;
    Collection *m_current = nullptr;
    bool m_inScheme = false;
};

} // namespace standin
