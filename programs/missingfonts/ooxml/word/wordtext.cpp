#include "programs/missingfonts/ooxml/word/wordtext.h"

#include "programs/missingfonts/ooxml/drawing/themefonts.h"
#include "programs/missingfonts/ooxml/word/wordsettings.h"

namespace programs {

Family WordContext::resolved(Family family) const
{
    const bool isComplex = family == MajorComplex || family == MinorComplex;
    return theme.resolved(family,
                          isComplex ? settings.complexLanguage() : settings.eastAsianLanguage());
}

bool WordText::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case wordTag("rPrChange"): // properties before a tracked change
    case wordTag("pPrChange"):
        return false;
    case wordTag("p"):
        m_paragraphs.emplace_back();
        m_paragraphs.back().style = &m_context.styles.defaultParagraphStyle();
        return true;
    case wordTag("tbl"):
        m_tables.push_back(&m_context.styles.defaultTableStyle());
        return true;
    case wordTag("tblStyle"):
        if (!m_tables.empty())
            m_tables.back() = &m_context.styles.style(element.attribute(Vocabulary::Word, "val"));
        return true;
    default:
        return m_paragraphs.empty() || startInParagraph(m_paragraphs.back(), element);
    }
}

bool WordText::startInParagraph(Paragraph &paragraph, const XmlElement &element)
{
    switch (element.tag()) {
    case wordTag("pPr"):
        paragraph.inProperties = true;
        break;
    case wordTag("r"):
    case tagOf(Vocabulary::Math, "r"):
        paragraph.run = Run();
        paragraph.inRun = true;
        break;
    case wordTag("t"):
    case wordTag("delText"):
    case tagOf(Vocabulary::Math, "t"):
        paragraph.inText = paragraph.inRun;
        break;
    default:
        if (paragraph.inRun)
            startInRun(paragraph.run, element);
        else if (paragraph.inProperties)
            startInProperties(paragraph, element);
        break;
    }
    return true;
}

void WordText::startInProperties(Paragraph &paragraph, const XmlElement &element)
{
    switch (element.tag()) {
    case wordTag("pStyle"):
        paragraph.style = &m_context.styles.style(element.attribute(Vocabulary::Word, "val"));
        break;
    case wordTag("numId"):
        paragraph.numbering = element.number(Vocabulary::Word, "val", -1);
        break;
    case wordTag("ilvl"):
        paragraph.level = element.number(Vocabulary::Word, "val", -1);
        break;
    case wordTag("rFonts"):
        readRunFonts(element, paragraph.mark, m_usage);
        break;
    default:
        break;
    }
}

void WordText::startInRun(Run &run, const XmlElement &element)
{
    switch (element.tag()) {
    case wordTag("rFonts"):
        readRunFonts(element, run.fonts, m_usage);
        run.prefersEastAsian = element.attribute(Vocabulary::Word, "hint") == "eastAsia";
        break;
    case wordTag("rStyle"):
        run.style = &m_context.styles.style(element.attribute(Vocabulary::Word, "val"));
        break;
    case wordTag("cs"):
    case wordTag("rtl"):
        run.isComplex = element.isOn(Vocabulary::Word, "val");
        break;
    case wordTag("sym"):
        m_usage.use(m_usage.family(element.attribute(Vocabulary::Word, "font")));
        break;
    case wordTag("footnoteReference"):
    case wordTag("footnoteRef"):
    case wordTag("endnoteReference"):
    case wordTag("endnoteRef"):
    case wordTag("annotationRef"):
    case wordTag("pgNum"):
        run.scripts |= AsciiScript;
        break;
    default:
        break;
    }
}

void WordText::text(std::string_view text)
{
    if (m_paragraphs.empty() || !m_paragraphs.back().inText)
        return;
    Run &run = m_paragraphs.back().run;
    run.scripts |= scriptsOf(text, run.prefersEastAsian);
}

void WordText::endElement(Tag tag)
{
    if (tag == wordTag("tbl") && !m_tables.empty())
        m_tables.pop_back();
    if (m_paragraphs.empty())
        return;
    Paragraph &paragraph = m_paragraphs.back();
    switch (tag) {
    case wordTag("t"):
    case wordTag("delText"):
    case tagOf(Vocabulary::Math, "t"):
        paragraph.inText = false;
        break;
    case wordTag("pPr"):
        paragraph.inProperties = false;
        break;
    case wordTag("r"):
    case tagOf(Vocabulary::Math, "r"):
        endRun(paragraph);
        break;
    case wordTag("p"):
        endParagraph(paragraph);
        m_paragraphs.pop_back();
        break;
    default:
        break;
    }
}

void WordText::endRun(Paragraph &paragraph)
{
    paragraph.inRun = false;
    Run &run = paragraph.run;
    if (run.scripts == 0)
        return;
    if (run.style)
        run.fonts.inherit(run.style->fonts);
    use(run.fonts, paragraph, run.isComplex ? unsigned(ComplexScript) : run.scripts);
}

void WordText::endParagraph(const Paragraph &paragraph)
{
    const bool ownList = paragraph.numbering >= 0;
    const int numbering = ownList ? paragraph.numbering : paragraph.style->numbering;
    int level = paragraph.level;
    if (level < 0)
        level = ownList ? 0 : paragraph.style->level;
    const WordNumbering::Label *label = m_context.numbering.label(numbering, level);
    if (!label)
        return;
    FontSet fonts = label->fonts;
    fonts.inherit(paragraph.mark);
    use(fonts, paragraph, label->scripts);
}

void WordText::use(FontSet fonts, const Paragraph &paragraph, unsigned scripts)
{
    fonts.inherit(paragraph.style->fonts);
    if (!m_tables.empty())
        fonts.inherit(m_tables.back()->fonts);
    fonts.inherit(m_context.styles.documentDefaults());
    fonts.use(scripts, m_usage, [this](Family family) { return m_context.resolved(family); });
}

} // namespace programs
