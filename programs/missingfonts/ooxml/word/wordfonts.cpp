#include "programs/missingfonts/ooxml/word/wordfonts.h"

#include <string_view>

#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

namespace {

struct SlotAttribute
{
    FontSet::Slot slot;
    std::string_view family;
    std::string_view theme; ///< goes before the other where an element has both
};

constexpr SlotAttribute slotAttributes[] = {{FontSet::Ascii, "ascii", "asciiTheme"},
                                            {FontSet::HighAnsi, "hAnsi", "hAnsiTheme"},
                                            {FontSet::EastAsian, "eastAsia", "eastAsiaTheme"},
                                            {FontSet::Complex, "cs", "cstheme"}};

/// The family that a value such as "majorEastAsia" means.
Family themeReference(std::string_view value)
{
    constexpr std::string_view majorStart = "major";
    const bool major = value.substr(0, majorStart.size()) == majorStart;
    const std::string_view kind = value.substr(majorStart.size());
    if (kind == "EastAsia")
        return major ? MajorEastAsian : MinorEastAsian;
    if (kind == "Bidi")
        return major ? MajorComplex : MinorComplex;
    return major ? MajorLatin : MinorLatin;
}

} // namespace

void readRunFonts(const XmlElement &element, FontSet &fonts, FontUsage &usage)
{
    for (const SlotAttribute &attribute : slotAttributes) {
        const std::string name = element.attribute(Vocabulary::Word, attribute.family);
        if (!name.empty())
            fonts[attribute.slot] = usage.family(name);
        const std::string theme = element.attribute(Vocabulary::Word, attribute.theme);
        if (theme.size() > std::string_view("major").size())
            fonts[attribute.slot] = themeReference(theme);
    }
}

} // namespace programs
