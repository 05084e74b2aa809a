#include "programs/missingfonts/ooxml/sheet/sheetcells.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace programs {

namespace {

/// What is kept of a value or heading: indexes of texts are short, and headings are bounded.
constexpr std::size_t keptBytes = 4096;

constexpr std::array<Tag, 6> pageHeadingTags = {sheetTag("oddHeader"),   sheetTag("oddFooter"),
                                                sheetTag("evenHeader"),  sheetTag("evenFooter"),
                                                sheetTag("firstHeader"), sheetTag("firstFooter")};

bool isPageHeading(Tag tag)
{
    return std::find(pageHeadingTags.begin(), pageHeadingTags.end(), tag) != pageHeadingTags.end();
}

} // namespace

bool SheetCells::startElement(const XmlElement &element)
{
    const Tag tag = element.tag();
    if (tag == sheetTag("c")) {
        m_format = static_cast<std::size_t>(std::max(0, element.number(Vocabulary::None, "s", 0)));
        m_isShared = element.attribute(Vocabulary::None, "t") == "s";
        m_value.clear();
        m_hasOwnText = false;
    } else if (tag == sheetTag("v")) {
        m_place = Place::Value;
    } else if (tag == sheetTag("is") || tag == sheetTag("text")) {
        m_richText.begin();
        m_place = Place::RichText;
    } else if (isPageHeading(tag)) {
        m_value.clear();
        m_place = Place::PageHeading;
    } else if (m_place == Place::RichText) {
        return m_richText.startElement(element);
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
    if (tag == sheetTag("c")) {
        endCell();
    } else if (tag == sheetTag("v")) {
        m_place = Place::Elsewhere;
    } else if (tag == sheetTag("is")) {
        m_hasOwnText = m_richText.usesCellFont();
        m_place = Place::Elsewhere;
    } else if (tag == sheetTag("text")) {
        if (m_richText.usesCellFont())
            m_workbook.useFormat(0);
        m_place = Place::Elsewhere;
    } else if (isPageHeading(tag)) {
        m_workbook.useHeading(m_value);
        m_place = Place::Elsewhere;
    } else {
        m_richText.endElement(tag);
    }
}

void SheetCells::endCell()
{
    bool shows = m_hasOwnText || !m_value.empty();
    if (m_isShared && !m_hasOwnText) {
        std::size_t index = 0;
        const char *end = m_value.data() + m_value.size();
        shows = std::from_chars(m_value.data(), end, index).ec == std::errc() &&
                m_workbook.strings.usesCellFont(index);
    }
    if (shows)
        m_workbook.useFormat(m_format);
}

} // namespace programs
