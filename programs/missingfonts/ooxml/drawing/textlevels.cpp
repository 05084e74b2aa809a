#include "programs/missingfonts/ooxml/drawing/textlevels.h"

#include <algorithm>

#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

namespace {

constexpr std::array<Tag, 9> levelTags = {
    drawingTag("lvl1pPr"), drawingTag("lvl2pPr"), drawingTag("lvl3pPr"),
    drawingTag("lvl4pPr"), drawingTag("lvl5pPr"), drawingTag("lvl6pPr"),
    drawingTag("lvl7pPr"), drawingTag("lvl8pPr"), drawingTag("lvl9pPr")};

/// The number of levels for an element that is not a level.
std::size_t levelOf(Tag tag)
{
    return static_cast<std::size_t>(std::find(levelTags.begin(), levelTags.end(), tag) -
                                    levelTags.begin());
}

Family typeface(const XmlElement &element, FontUsage &usage)
{
    return usage.family(element.attribute(Vocabulary::None, "typeface"));
}

} // namespace

void readTextFonts(const XmlElement &element, FontSet &fonts, FontUsage &usage)
{
    switch (element.tag()) {
    case drawingTag("latin"):
        fonts[FontSet::Ascii] = fonts[FontSet::HighAnsi] = typeface(element, usage);
        break;
    case drawingTag("ea"):
        fonts[FontSet::EastAsian] = typeface(element, usage);
        break;
    case drawingTag("cs"):
        fonts[FontSet::Complex] = typeface(element, usage);
        break;
    case drawingTag("sym"):
        fonts[FontSet::Symbol] = typeface(element, usage);
        break;
    default:
        break;
    }
}

void TextLevel::readBullet(const XmlElement &element, FontUsage &usage)
{
    switch (element.tag()) {
    case drawingTag("buFont"):
        bulletFont = typeface(element, usage);
        bulletFollowsText = false;
        break;
    case drawingTag("buFontTx"):
        bulletFont = noFamily;
        bulletFollowsText = true;
        break;
    case drawingTag("buChar"):
    case drawingTag("buAutoNum"):
        bullet = Bullet::Font;
        break;
    case drawingTag("buNone"):
    case drawingTag("buBlip"):
        bullet = Bullet::None;
        break;
    default:
        break;
    }
}

void TextLevel::inherit(const TextLevel &below)
{
    fonts.inherit(below.fonts);
    if (bulletFont == noFamily && !bulletFollowsText) {
        bulletFont = below.bulletFont;
        bulletFollowsText = below.bulletFollowsText;
    }
    if (bullet == Bullet::Unset)
        bullet = below.bullet;
}

void TextLevelsReader::setTarget(TextLevels *levels)
{
    m_levels = levels;
    m_level = nullptr;
    m_inRunProperties = false;
}

void TextLevelsReader::startElement(const XmlElement &element)
{
    if (!m_levels)
        return;
    const std::size_t level = levelOf(element.tag());
    if (level < levelTags.size())
        m_level = &(*m_levels)[level];
    else if (element.tag() == drawingTag("defRPr"))
        m_inRunProperties = true;
    else if (m_level && m_inRunProperties)
        readTextFonts(element, m_level->fonts, m_usage);
    else if (m_level)
        m_level->readBullet(element, m_usage);
}

void TextLevelsReader::endElement(Tag tag)
{
    if (tag == drawingTag("defRPr"))
        m_inRunProperties = false;
    else if (m_levels && levelOf(tag) < levelTags.size())
        m_level = nullptr;
}

} // namespace programs
