#pragma once

#include <vector>

#include "programs/missingfonts/ooxml/word/wordfonts.h"
#include "programs/missingfonts/ooxml/word/wordnumbering.h"
#include "programs/missingfonts/ooxml/word/wordstyles.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

class ThemeFonts;
class WordSettings;

/// What determines the fonts of a document's text.
struct WordContext
{
    const WordStyles &styles;
    const WordNumbering &numbering;
    const ThemeFonts &theme;
    const WordSettings &settings;

    /// @p family, or what it refers to in the theme.
    Family resolved(Family family) const;
};

/// Reads the text of a part (body, header, footer, notes, comments) and marks its fonts as used.
class WordText : public XmlHandler
{
public:
    WordText(FontUsage &usage, const WordContext &context) : m_usage(usage), m_context(context) {}

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;
    void text(std::string_view text) override;

private:
    struct Run
    {
        FontSet fonts;
        const WordStyles::Style *style = nullptr;
        unsigned scripts = 0;
        bool isComplex = false;
        bool prefersEastAsian = false;
    };

    struct Paragraph
    {
        const WordStyles::Style *style = nullptr;
        FontSet mark;
        Run run;
        int numbering = -1;
        int level = -1;
        bool inProperties = false;
        bool inRun = false;
        bool inText = false;
    };

    bool startInParagraph(Paragraph &paragraph, const XmlElement &element);
    void startInProperties(Paragraph &paragraph, const XmlElement &element);
    void startInRun(Run &run, const XmlElement &element);
    void endRun(Paragraph &paragraph);
    void endParagraph(const Paragraph &paragraph);
    void use(FontSet fonts, const Paragraph &paragraph, unsigned scripts);

    FontUsage &m_usage;
    const WordContext &m_context;
    // More than one where a run holds a text box.
    std::vector<Paragraph> m_paragraphs;
    std::vector<const WordStyles::Style *> m_tables;
};

} // namespace programs
