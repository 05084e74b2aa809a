#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "programs/missingfonts/ooxml/word/wordfonts.h"
#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

/// The fonts and lists of a document's styles, read from its styles part.
class WordStyles : public XmlHandler
{
public:
    /// A style with all that it inherits from the styles that it is based on.
    struct Style
    {
        FontSet fonts;
        /// The list that its paragraphs are in; -1 when they are in none.
        int numbering = -1;
        int level = 0;
    };

    explicit WordStyles(FontUsage &usage) : m_usage(usage) {}

    /// Passes the inherited on; to be called when the part has been read.
    void resolve();

    const FontSet &documentDefaults() const { return m_defaults; }

    /// The style of that identifier; one that says nothing when there is none.
    const Style &style(std::string_view identifier) const;

    const Style &defaultParagraphStyle() const { return style(m_defaultParagraph); }
    const Style &defaultTableStyle() const { return style(m_defaultTable); }

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;

private:
    struct Record
    {
        Style style;
        std::string base;
        bool resolved = false;
    };

    void beginStyle(const XmlElement &element);
    void resolve(const std::string &identifier);

    FontUsage &m_usage;
    FontSet m_defaults;
    std::unordered_map<std::string, Record> m_records;
    std::string m_defaultParagraph;
    std::string m_defaultTable;
    Record *m_current = nullptr;
    bool m_inDefaults = false;
};

} // namespace standin
