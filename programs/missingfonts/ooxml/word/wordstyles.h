#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/ooxml/word/wordfonts.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

/// The fonts and lists of a document's styles, read from its styles part.
class WordStyles : public XmlHandler
{
public:
    /// A style, including what it inherits from the styles that it is based on.
    struct Style
    {
        FontSet fonts;
        /// The list that its paragraphs belong to; -1 for none.
        int numbering = -1;
        int level = 0;
    };

    explicit WordStyles(FontUsage &usage) : m_usage(usage) {}

    /// Applies the inheritance; to be called when the part has been read.
    void resolve()
    {
        for (const auto &[identifier, record] : m_records)
            resolve(identifier);
    }

    const FontSet &documentDefaults() const { return m_defaults; }

    /// The style of that identifier; an empty one when it is unknown.
    const Style &style(std::string_view identifier) const
    {
        static const Style none;
        const auto found = m_records.find(std::string(identifier));
        return found == m_records.end() ? none : found->second.style;
    }

    const Style &defaultParagraphStyle() const { return style(m_defaultParagraph); }
    const Style &defaultTableStyle() const { return style(m_defaultTable); }

    bool startElement(const XmlElement &element) override
    {
        switch (element.tag()) {
        case wordTag("rPrDefault"):
            m_inDefaults = true;
            break;
        case wordTag("style"):
            beginStyle(element);
            break;
        case wordTag("tblStylePr"): // for some cells of a table only
        case wordTag("rPrChange"):
        case wordTag("pPrChange"):
            return false;
        case wordTag("basedOn"):
            if (m_current)
                m_current->base = element.attribute(Vocabulary::Word, "val");
            break;
        case wordTag("rFonts"):
            if (m_inDefaults)
                readRunFonts(element, m_defaults, m_usage);
            else if (m_current)
                readRunFonts(element, m_current->style.fonts, m_usage);
            break;
        case wordTag("numId"):
            if (m_current)
                m_current->style.numbering = element.number(Vocabulary::Word, "val", -1);
            break;
        case wordTag("ilvl"):
            if (m_current)
                m_current->style.level = element.number(Vocabulary::Word, "val", 0);
            break;
        default:
            break;
        }
        return true;
    }

    void endElement(Tag tag) override
    {
        if (tag == wordTag("rPrDefault"))
            m_inDefaults = false;
        else if (tag == wordTag("style"))
            m_current = nullptr;
    }

private:
    struct Record
    {
        Style style;
        std::string base;
        bool resolved = false;
    };

    void beginStyle(const XmlElement &element)
    {
        if (m_records.size() >= limits::styles)
            throw DocumentError("the document has too many styles");
        const std::string identifier = element.attribute(Vocabulary::Word, "styleId");
        m_current = &m_records[identifier];
        if (!element.has(Vocabulary::Word, "default") || !element.isOn(Vocabulary::Word, "default"))
            return;
        const std::string type = element.attribute(Vocabulary::Word, "type");
        if (type == "paragraph")
            m_defaultParagraph = identifier;
        else if (type == "table")
            m_defaultTable = identifier;
    }

    void resolve(const std::string &identifier)
    {
        // Follows the bases to the first resolved style, then applies them in reverse. A style that
        // is met twice is based on itself.
        std::vector<Record *> chain;
        const Style *base = nullptr;
        for (auto found = m_records.find(identifier); found != m_records.end();
             found = m_records.find(found->second.base)) {
            if (found->second.resolved) {
                base = &found->second.style;
                break;
            }
            found->second.resolved = true;
            chain.push_back(&found->second);
        }
        for (auto record = chain.rbegin(); record != chain.rend(); ++record) {
            Style &style = (*record)->style;
            if (base) {
                style.fonts.inherit(base->fonts);
                if (style.numbering < 0) {
                    style.numbering = base->numbering;
                    style.level = base->level;
                }
            }
            base = &style;
        }
    }

    FontUsage &m_usage;
    FontSet m_defaults;
    std::unordered_map<std::string, Record> m_records;
    std::string m_defaultParagraph;
    std::string m_defaultTable;
    Record *m_current = nullptr;
    bool m_inDefaults = false;
};

} // namespace programs
