#include "programs/missingfonts/ooxml/word/wordfonts.h"

#include <string_view>

#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

namespace {

struct SlotAttribute
{
    std::string_view name;
    WordFonts::Slot slot;
};

constexpr SlotAttribute familyAttributes[] = {{"ascii", WordFonts::Ascii},
                                              {"hAnsi", WordFonts::HighAnsi},
                                              {"eastAsia", WordFonts::EastAsian},
                                              {"cs", WordFonts::Complex}};

/// They go before the others where an element has both.
constexpr SlotAttribute themeAttributes[] = {{"asciiTheme", WordFonts::Ascii},
                                             {"hAnsiTheme", WordFonts::HighAnsi},
                                             {"eastAsiaTheme", WordFonts::EastAsian},
                                             {"cstheme", WordFonts::Complex}};

Family themeReference(std::string_view value)
{
    constexpr std::string_view majorStart = "major";
    const bool major = value.substr(0, majorStart.size()) == majorStart;
    const std::string_view kind = value.substr(value.empty() ? 0 : majorStart.size());
    if (kind == "EastAsia")
        return major ? MajorEastAsian : MinorEastAsian;
    if (kind == "Bidi")
        return major ? MajorComplex : MinorComplex;
    return major ? MajorLatin : MinorLatin;
}

} // namespace

void WordFonts::read(const XmlElement &element, FontUsage &usage)
{
    for (const SlotAttribute &attribute : familyAttributes) {
        const std::string name = element.attribute(Vocabulary::Word, attribute.name);
        if (!name.empty())
            families[attribute.slot] = usage.family(name);
    }
    for (const SlotAttribute &attribute : themeAttributes) {
        const std::string value = element.attribute(Vocabulary::Word, attribute.name);
        if (value.size() > 5)
            families[attribute.slot] = themeReference(value);
    }
}

void WordFonts::inherit(const WordFonts &below)
{
    for (std::size_t slot = 0; slot < Slots; ++slot) {
        if (families[slot] == noFamily)
            families[slot] = below.families[slot];
    }
}

} // namespace standin
