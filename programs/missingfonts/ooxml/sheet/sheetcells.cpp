#include "programs/missingfonts/ooxml/sheet/sheetcells.h"

#include <algorithm>
#include <charconv>

#include "programs/missingfonts/ooxml/sheet/pageheading.h"
#include "programs/missingfonts/ooxml/sheet/sharedstrings.h"
#include "programs/missingfonts/ooxml/sheet/sheetstyles.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

namespace {

/// What is kept of a value or heading: numbers of texts are short, and headings are bounded.
constexpr std::size_t keptBytes = 4096;

} // namespace

bool SheetCells::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case Tag::SheetCell:
        m_format = static_cast<std::size_t>(std::max(0, element.number(Vocabulary::None, "s", 0)));
        m_isShared = element.attribute(Vocabulary::None, "t") == "s";
        m_value.clear();
        m_hasOwnText = false;
        break;
    case Tag::SheetValue:
        m_place = Place::Value;
        break;
    case Tag::SheetInlineString:
    case Tag::SheetCommentText:
        m_richText.begin();
        m_place = Place::RichText;
        break;
    case Tag::SheetOddHeader:
    case Tag::SheetOddFooter:
    case Tag::SheetEvenHeader:
    case Tag::SheetEvenFooter:
    case Tag::SheetFirstHeader:
    case Tag::SheetFirstFooter:
        m_value.clear();
        m_place = Place::PageHeading;
        break;
    default:
        return m_place != Place::RichText || m_richText.startElement(element);
    }
    return true;
}

void SheetCells::text(std::string_view text)
{
    if (m_place == Place::RichText)
        m_richText.text(text);
    else if (m_place != Place::Elsewhere && m_value.size() < keptBytes)
        m_value.append(text.substr(0, keptBytes));
}

void SheetCells::endElement(Tag tag)
{
    switch (tag) {
    case Tag::SheetValue:
        m_place = Place::Elsewhere;
        break;
    case Tag::SheetInlineString:
        m_hasOwnText = m_richText.usesCellFont();
        m_place = Place::Elsewhere;
        break;
    case Tag::SheetCommentText:
        if (m_richText.usesCellFont())
            useFormat(0);
        m_place = Place::Elsewhere;
        break;
    case Tag::SheetCell:
        endCell();
        break;
    case Tag::SheetOddHeader:
    case Tag::SheetOddFooter:
    case Tag::SheetEvenHeader:
    case Tag::SheetEvenFooter:
    case Tag::SheetFirstHeader:
    case Tag::SheetFirstFooter:
        endPageHeading();
        m_place = Place::Elsewhere;
        break;
    default:
        m_richText.endElement(tag);
        break;
    }
}

void SheetCells::endCell()
{
    bool shows = m_hasOwnText || !m_value.empty();
    if (m_isShared && !m_hasOwnText) {
        std::size_t index = 0;
        const char *end = m_value.data() + m_value.size();
        shows = std::from_chars(m_value.data(), end, index).ec == std::errc() &&
                m_strings.usesCellFont(index);
    }
    if (shows)
        useFormat(m_format);
}

void SheetCells::endPageHeading()
{
    const HeadingFonts fonts = headingFonts(m_value);
    for (const std::string &family : fonts.families)
        m_usage.use(m_usage.family(family));
    if (fonts.usesWorkbookFont)
        useFormat(0);
}

void SheetCells::useFormat(std::size_t format)
{
    m_used.insert(m_styles.font(format));
}

} // namespace standin
