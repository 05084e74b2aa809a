#include "programs/missingfonts/ooxml/drawing/themefonts.h"

#include <utility>

#include "programs/missingfonts/ooxml/drawing/textlevels.h"

namespace programs {

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
    constexpr FontSet::Slot scripts[] = {FontSet::Ascii, FontSet::EastAsian, FontSet::Complex};
    const FontSet::Slot slot = scripts[family % MinorLatin];
    const Collection &collection = family >= MinorLatin ? m_minor : m_major;
    const Family named = collection.fonts[slot];
    if (named != noFamily || slot == FontSet::Ascii)
        return named;
    const auto found = collection.byScript.find(scriptOfLanguage(language));
    return found == collection.byScript.end() ? noFamily : found->second;
}

Family ThemeFonts::collectionFont(bool major, Family member) const
{
    const Collection &collection = major ? m_major : m_minor;
    const Family latin = collection.fonts[FontSet::Ascii];
    if (member == noFamily)
        return latin;
    if (member == collection.fonts[FontSet::EastAsian] ||
        member == collection.fonts[FontSet::Complex])
        return member;
    for (const auto &[script, family] : collection.byScript) {
        if (family == member)
            return member;
    }
    return latin == noFamily ? member : latin;
}

bool ThemeFonts::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case drawingTag("fontScheme"):
        m_inScheme = true;
        break;
    case drawingTag("majorFont"):
        m_current = &m_major;
        break;
    case drawingTag("minorFont"):
        m_current = &m_minor;
        break;
    default:
        if (m_inScheme && m_current)
            readFont(element, *m_current);
        break;
    }
    return true;
}

void ThemeFonts::readFont(const XmlElement &element, Collection &collection)
{
    if (element.tag() == drawingTag("font")) {
        const Family family = m_usage.family(element.attribute(Vocabulary::None, "typeface"));
        collection.byScript[element.attribute(Vocabulary::None, "script")] =
            isThemeReference(family) ? noFamily : family;
        return;
    }
    readTextFonts(element, collection.fonts, m_usage);
    // A theme that refers to itself names no font.
    for (Family &family : collection.fonts.families) {
        if (isThemeReference(family))
            family = noFamily;
    }
}

void ThemeFonts::endElement(Tag tag)
{
    if (tag == drawingTag("majorFont") || tag == drawingTag("minorFont"))
        m_current = nullptr;
    else if (tag == drawingTag("fontScheme"))
        m_inScheme = false;
}

} // namespace programs
