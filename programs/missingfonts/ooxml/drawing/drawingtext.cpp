#include "programs/missingfonts/ooxml/drawing/drawingtext.h"

#include <algorithm>

#include "programs/missingfonts/common/textscripts.h"
#include "programs/missingfonts/ooxml/drawing/themefonts.h"

namespace programs {

namespace {

constexpr FontSet majorFonts = {{MajorLatin, MajorLatin, MajorEastAsian, MajorComplex, noFamily}};
constexpr FontSet minorFonts = {{MinorLatin, MinorLatin, MinorEastAsian, MinorComplex, noFamily}};

} // namespace

void DrawingText::beginShape(std::vector<const TextLevels *> inherited)
{
    m_inherited = std::move(inherited);
    m_listStyle = TextLevels();
    m_shapeFont = noFamily;
}

bool DrawingText::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case tagOf(Vocabulary::Chart, "chartSpace"):
        m_isChart = true;
        break;
    case drawingTag("fontRef"): {
        const std::string index = element.attribute(Vocabulary::None, "idx");
        m_shapeFont = index == "major" ? MajorLatin : index == "minor" ? MinorLatin : noFamily;
        break;
    }
    case drawingTag("lstStyle"):
        m_listStyle = TextLevels();
        m_levelsReader.setTarget(&m_listStyle);
        break;
    case drawingTag("p"):
        m_paragraph = Paragraph();
        m_inParagraph = true;
        break;
    default:
        if (m_levelsReader.isReading())
            m_levelsReader.startElement(element);
        else if (m_inParagraph)
            startInParagraph(element);
        break;
    }
    return true;
}

void DrawingText::startInParagraph(const XmlElement &element)
{
    switch (element.tag()) {
    case drawingTag("pPr"):
        beginParagraphProperties(element);
        break;
    case drawingTag("r"):
    case drawingTag("fld"):
        m_run = Run();
        m_inRun = true;
        m_paragraph.hasRuns = true;
        break;
    case drawingTag("rPr"):
        beginRunProperties(element);
        break;
    case drawingTag("defRPr"):
        // Only charts use a paragraph's run properties; shapes ignore them.
        if (m_isChart)
            m_fonts = &m_paragraph.own.fonts;
        break;
    case drawingTag("t"):
        m_inText = m_inRun;
        break;
    default:
        if (m_fonts)
            readTextFonts(element, *m_fonts, m_usage);
        else if (!m_inRun)
            m_paragraph.own.readBullet(element, m_usage);
        break;
    }
}

void DrawingText::beginParagraphProperties(const XmlElement &element)
{
    // A field's own paragraph properties have no effect.
    if (m_inRun)
        return;
    const int level = element.number(Vocabulary::None, "lvl", 0);
    m_paragraph.level = static_cast<std::size_t>(std::clamp(level, 0, 8));
}

void DrawingText::beginRunProperties(const XmlElement &element)
{
    if (!m_inRun)
        return;
    m_fonts = &m_run.fonts;
    m_run.language = element.attribute(Vocabulary::None, "lang");
    const std::string other = element.attribute(Vocabulary::None, "altLang");
    // English may be just the first of two languages that the text may be in.
    if (!other.empty() && m_run.language.substr(0, 2) == "en")
        m_run.language = other;
}

void DrawingText::text(std::string_view text)
{
    if (m_inText)
        m_run.scripts |= scriptsOf(text);
}

void DrawingText::endElement(Tag tag)
{
    m_levelsReader.endElement(tag);
    switch (tag) {
    case drawingTag("lstStyle"):
        m_levelsReader.setTarget(nullptr);
        break;
    case drawingTag("rPr"):
    case drawingTag("defRPr"):
        m_fonts = nullptr;
        break;
    case drawingTag("t"):
        m_inText = false;
        break;
    case drawingTag("r"):
    case drawingTag("fld"):
        endRun();
        break;
    case drawingTag("p"):
        endParagraph();
        break;
    default:
        break;
    }
}

TextLevel DrawingText::effectiveLevel() const
{
    TextLevel level = m_paragraph.own;
    level.inherit(m_listStyle[m_paragraph.level]);
    for (const TextLevels *inherited : m_inherited)
        level.inherit((*inherited)[m_paragraph.level]);
    level.fonts.inherit(m_shapeFont == MajorLatin ? majorFonts : minorFonts);
    return level;
}

void DrawingText::endRun()
{
    m_inRun = false;
    if (m_run.scripts == 0)
        return;
    m_paragraph.hasText = true;
    m_run.fonts.inherit(effectiveLevel().fonts);
    use(m_run.fonts, m_run.scripts, m_run.language);
}

void DrawingText::endParagraph()
{
    m_inParagraph = false;
    const TextLevel level = effectiveLevel();
    if (m_paragraph.hasText && level.bullet == TextLevel::Bullet::Font)
        m_usage.use(m_theme.resolved(level.bulletFont));
    // The labels of a chart come from its numbers: their paragraphs have properties but no text.
    if (m_isChart && !m_paragraph.hasRuns)
        use(level.fonts, AsciiScript, {});
}

void DrawingText::use(const FontSet &fonts, unsigned scripts, const std::string &language)
{
    fonts.use(scripts, m_usage, [&](Family family) { return m_theme.resolved(family, language); });
}

} // namespace programs
