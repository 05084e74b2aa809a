#pragma once

#include <string>
#include <vector>

#include "programs/missingfonts/ooxml/drawing/textlevels.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

class ThemeFonts;

/// Reads the text of shapes, tables, charts and diagrams and marks its fonts as used.
class DrawingText : public XmlHandler
{
public:
    DrawingText(FontUsage &usage, const ThemeFonts &theme)
        : m_usage(usage), m_theme(theme), m_levelsReader(usage)
    {
    }

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;
    void text(std::string_view text) override;

protected:
    /// A new shape begins; @p inherited are the list styles below its own, the nearest first.
    void beginShape(std::vector<const TextLevels *> inherited);

private:
    struct Run
    {
        FontSet fonts;
        unsigned scripts = 0;
        std::string language;
    };

    struct Paragraph
    {
        TextLevel own;
        std::size_t level = 0;
        bool hasRuns = false;
        bool hasText = false;
    };

    void startInParagraph(const XmlElement &element);
    void beginParagraphProperties(const XmlElement &element);
    void beginRunProperties(const XmlElement &element);
    void endRun();
    void endParagraph();
    TextLevel effectiveLevel() const;
    void use(const FontSet &fonts, unsigned scripts, const std::string &language);

    FontUsage &m_usage;
    const ThemeFonts &m_theme;
    TextLevelsReader m_levelsReader;
    TextLevels m_listStyle;
    std::vector<const TextLevels *> m_inherited;
    Family m_shapeFont = noFamily;
    Paragraph m_paragraph;
    Run m_run;
    // The run properties that are being read, if any.
    FontSet *m_fonts = nullptr;
    bool m_isChart = false;
    bool m_inParagraph = false;
    bool m_inRun = false;
    bool m_inText = false;
};

} // namespace programs
