#include "programs/missingfonts/ooxml/drawing/textlevels.h"

#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

namespace {

void fill(Family &family, Family below)
{
    if (family == noFamily)
        family = below;
}

} // namespace

void TextFonts::read(const XmlElement &element, FontUsage &usage)
{
    const Family family = usage.family(element.attribute(Vocabulary::None, "typeface"));
    switch (element.tag()) {
    case Tag::DrawingLatin:
        latin = family;
        break;
    case Tag::DrawingEastAsian:
        eastAsian = family;
        break;
    case Tag::DrawingComplex:
        complex = family;
        break;
    case Tag::DrawingSymbol:
        symbol = family;
        break;
    default:
        break;
    }
}

void TextFonts::inherit(const TextFonts &below)
{
    fill(latin, below.latin);
    fill(eastAsian, below.eastAsian);
    fill(complex, below.complex);
    fill(symbol, below.symbol);
}

void TextLevel::readBullet(const XmlElement &element, FontUsage &usage)
{
    switch (element.tag()) {
    case Tag::DrawingBulletFont:
        bulletFont = usage.family(element.attribute(Vocabulary::None, "typeface"));
        bulletFollowsText = false;
        break;
    case Tag::DrawingBulletFontOfText:
        bulletFont = noFamily;
        bulletFollowsText = true;
        break;
    case Tag::DrawingBulletCharacter:
    case Tag::DrawingBulletAutomatic:
        bullet = Bullet::Font;
        break;
    case Tag::DrawingBulletNone:
    case Tag::DrawingBulletPicture:
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
    const Tag tag = element.tag();
    if (!m_levels)
        return;
    if (tag >= Tag::DrawingLevel1 && tag <= Tag::DrawingLevel9) {
        m_level = &(*m_levels)[static_cast<std::size_t>(tag) -
                               static_cast<std::size_t>(Tag::DrawingLevel1)];
    } else if (tag == Tag::DrawingDefaultRun) {
        m_inRunProperties = true;
    } else if (m_level && m_inRunProperties) {
        m_level->fonts.read(element, m_usage);
    } else if (m_level) {
        m_level->readBullet(element, m_usage);
    }
}

void TextLevelsReader::endElement(Tag tag)
{
    if (tag == Tag::DrawingDefaultRun)
        m_inRunProperties = false;
    else if (tag >= Tag::DrawingLevel1 && tag <= Tag::DrawingLevel9)
        m_level = nullptr;
}

} // namespace standin
