#pragma once

#include <string>
#include <unordered_map>

#include "programs/missingfonts/ooxml/word/wordfonts.h"
#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

/// The labels of a document's lists, read from its numbering part.
class WordNumbering : public XmlHandler
{
public:
    /// The label of one level of a list.
    struct Label
    {
        FontSet fonts;
        /// Kinds of its characters; none for a list without labels.
        unsigned scripts = 0;
    };

    explicit WordNumbering(FontUsage &usage) : m_usage(usage) {}

    /// The label of a level (0 to 8) of a list; null when there is none.
    const Label *label(int numbering, int level) const;

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;

private:
    using Levels = std::unordered_map<int, Label>;

    struct Numbering
    {
        int abstractNumbering = -1;
        Levels overrides;
    };

    void beginLevel(const XmlElement &element);
    void endLevel();

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

} // namespace standin
