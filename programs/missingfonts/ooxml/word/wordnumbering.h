#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <unordered_map>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/ooxml/word/wordfonts.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

/// Reads the labels of a document's lists from its numbering part.
class WordNumbering : public XmlHandler
{
public:
    /// The label of one level of a list.
    struct Label
    {
        FontSet fonts;
        /// Kinds of its characters (Script); 0 for a list without labels.
        unsigned scripts = 0;
    };

    explicit WordNumbering(FontUsage &usage) : m_usage(usage) {}

    /// The label of a level (0 to 8) of a list; null for none.
    const Label *label(int numbering, int level) const
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

    bool startElement(const XmlElement &element) override
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

    void endElement(Tag tag) override
    {
        if (tag == wordTag("lvl")) {
            endLevel();
        } else if (tag == wordTag("abstractNum") || tag == wordTag("num")) {
            m_levels = nullptr;
            m_numbering = nullptr;
        }
    }

private:
    using Levels = std::unordered_map<int, Label>;

    struct Numbering
    {
        int abstractNumbering = -1;
        Levels overrides;
    };

    /// True for the name of a number format that is written with East Asian characters.
    static bool isEastAsian(std::string_view format)
    {
        constexpr std::array<std::string_view, 9> beginnings = {"chinese", "ideograph", "japanese",
                                                                "korean",  "taiwanese", "aiueo",
                                                                "iroha",   "ganada",    "chosung"};
        return std::any_of(beginnings.begin(), beginnings.end(), [format](std::string_view start) {
            return format.substr(0, start.size()) == start;
        });
    }

    void beginLevel(const XmlElement &element)
    {
        if (!m_levels)
            return;
        if (++m_count > limits::numberingLevels)
            throw DocumentError("the document has too many lists");
        m_label = &(*m_levels)[element.number(Vocabulary::Word, "ilvl", 0)];
        m_text.clear();
        m_eastAsianNumbers = false;
    }

    void endLevel()
    {
        if (!m_label)
            return;
        m_label->scripts = scriptsOf(m_text);
        if (m_eastAsianNumbers && m_text.find('%') != std::string::npos)
            m_label->scripts |= EastAsianScript;
        m_label = nullptr;
    }

    FontUsage &m_usage;
    std::unordered_map<int, Levels> m_abstract;
    std::unordered_map<int, Numbering> m_numberings;
    Levels *m_levels = nullptr;
    Numbering *m_numbering = nullptr;
    Label *m_label = nullptr;
    std::string m_text;
    bool m_eastAsianNumbers = false;
    std::size_t m_count = 0;
};

} // namespace programs
