#include "programs/missingfonts/ooxml/word/wordnumbering.h"

#include <algorithm>
#include <array>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

namespace {

/// How the names of number formats that are written with East Asian characters begin.
constexpr std::array<std::string_view, 9> eastAsianFormats = {"chinese", "ideograph", "japanese",
                                                              "korean",  "taiwanese", "aiueo",
                                                              "iroha",   "ganada",    "chosung"};

bool isEastAsian(std::string_view format)
{
    return std::any_of(
        eastAsianFormats.begin(), eastAsianFormats.end(),
        [format](std::string_view start) { return format.substr(0, start.size()) == start; });
}

} // namespace

const WordNumbering::Label *WordNumbering::label(int numbering, int level) const
{
    const auto list = m_numberings.find(numbering);
    if (list == m_numberings.end())
        return nullptr;
    const auto overridden = list->second.overrides.find(level);
    if (overridden != list->second.overrides.end())
        return &overridden->second;
    const auto levels = m_abstract.find(list->second.abstractNumbering);
    if (levels == m_abstract.end())
        return nullptr;
    const auto found = levels->second.find(level);
    return found == levels->second.end() ? nullptr : &found->second;
}

bool WordNumbering::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case wordTag("abstractNum"):
        m_levels = &m_abstract[element.number(Vocabulary::Word, "abstractNumId", -1)];
        break;
    case wordTag("num"):
        m_numbering = &m_numberings[element.number(Vocabulary::Word, "numId", -1)];
        m_levels = &m_numbering->overrides;
        break;
    case wordTag("abstractNumId"):
        if (m_numbering)
            m_numbering->abstractNumbering = element.number(Vocabulary::Word, "val", -1);
        break;
    case wordTag("lvl"):
        beginLevel(element);
        break;
    case wordTag("numFmt"):
        m_eastAsianNumbers = isEastAsian(element.attribute(Vocabulary::Word, "val"));
        break;
    case wordTag("lvlText"):
        m_text = element.attribute(Vocabulary::Word, "val");
        break;
    case wordTag("rFonts"):
        if (m_label)
            readRunFonts(element, m_label->fonts, m_usage);
        break;
    default:
        break;
    }
    return true;
}

void WordNumbering::beginLevel(const XmlElement &element)
{
    if (!m_levels)
        return;
    if (++m_count > limits::numberingLevels)
        throw DocumentError("the document has too many lists");
    m_label = &(*m_levels)[element.number(Vocabulary::Word, "ilvl", 0)];
    m_text.clear();
    m_eastAsianNumbers = false;
}

void WordNumbering::endElement(Tag tag)
{
    if (tag == wordTag("lvl")) {
        endLevel();
    } else if (tag == wordTag("abstractNum") || tag == wordTag("num")) {
        m_levels = nullptr;
        m_numbering = nullptr;
    }
}

void WordNumbering::endLevel()
{
    if (!m_label)
        return;
    m_label->scripts = scriptsOf(m_text);
    if (m_eastAsianNumbers && m_text.find('%') != std::string::npos)
        m_label->scripts |= EastAsianScript;
    m_label = nullptr;
}

} // namespace standin
