#include "programs/missingfonts/ooxml/drawing/themefonts.h"

#include <utility>

#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

namespace {

/// Longer beginnings first.
constexpr std::pair<std::string_view, std::string_view> scriptsOfLanguages[] = {
    {"zh-TW", "Hant"}, {"zh-HK", "Hant"}, {"zh-MO", "Hant"}, {"zh-Hant", "Hant"}, {"zh", "Hans"},
    {"ja", "Jpan"},    {"ko", "Hang"},    {"ar", "Arab"},    {"fa", "Arab"},      {"ug", "Uigh"},
    {"he", "Hebr"},    {"th", "Thai"},    {"hi", "Deva"},    {"bo", "Tibt"},      {"mn", "Mong"},
};

std::string scriptOfLanguage(std::string_view language)
{
    for (const auto &[start, script] : scriptsOfLanguages) {
        if (language.substr(0, start.size()) == start)
            return std::string(script);
    }
    return {};
}

bool isThemeReference(Family family)
{
    return family >= 0 && family < ThemeReferences;
}

} // namespace

Family ThemeFonts::resolved(Family family, std::string_view language) const
{
    if (!isThemeReference(family))
        return family;
    const Collection &collection = family >= MinorLatin ? m_minor : m_major;
    if (family == MajorLatin || family == MinorLatin)
        return collection.latin;
    const bool isEastAsian = family == MajorEastAsian || family == MinorEastAsian;
    const Family named = isEastAsian ? collection.eastAsian : collection.complex;
    if (named != noFamily)
        return named;
    const auto found = collection.byScript.find(scriptOfLanguage(language));
    return found == collection.byScript.end() ? noFamily : found->second;
}

Family ThemeFonts::collectionFont(bool major, Family member) const
{
    const Collection &collection = major ? m_major : m_minor;
    if (member == noFamily)
        return collection.latin;
    if (member == collection.eastAsian || member == collection.complex)
        return member;
    for (const auto &[script, family] : collection.byScript) {
        if (family == member)
            return member;
    }
    return collection.latin == noFamily ? member : collection.latin;
}

bool ThemeFonts::startElement(const XmlElement &element)
{
    const auto typeface = [&] {
        const Family family = m_usage.family(element.attribute(Vocabulary::None, "typeface"));
        return isThemeReference(family) ? noFamily : family;
    };
    switch (element.tag()) {
    case Tag::DrawingFontScheme:
        m_inScheme = true;
        break;
    case Tag::DrawingMajorFont:
    case Tag::DrawingMinorFont:
        m_current = element.tag() == Tag::DrawingMajorFont ? &m_major : &m_minor;
        break;
    case Tag::DrawingLatin:
        if (m_inScheme && m_current)
            m_current->latin = typeface();
        break;
    case Tag::DrawingEastAsian:
        if (m_inScheme && m_current)
            m_current->eastAsian = typeface();
        break;
    case Tag::DrawingComplex:
        if (m_inScheme && m_current)
            m_current->complex = typeface();
        break;
    case Tag::DrawingFont:
        if (m_inScheme && m_current)
            m_current->byScript[element.attribute(Vocabulary::None, "script")] = typeface();
        break;
    default:
        break;
    }
    return true;
}

void ThemeFonts::endElement(Tag tag)
{
    if (tag == Tag::DrawingMajorFont || tag == Tag::DrawingMinorFont)
        m_current = nullptr;
    else if (tag == Tag::DrawingFontScheme)
        m_inScheme = false;
}

} // namespace standin
