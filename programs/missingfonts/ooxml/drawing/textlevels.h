#pragma once

#include <array>

#include "programs/missingfonts/common/fontset.h"
#include "programs/missingfonts/xml/xmlnames.h"

namespace programs {

class XmlElement;

/// Takes over a:latin, a:ea, a:cs or a:sym; ignores other elements.
void readTextFonts(const XmlElement &element, FontSet &fonts, FontUsage &usage);

/// How the paragraphs of one outline level look.
struct TextLevel
{
    enum class Bullet {
        Unset,
        None,
        Font ///< a character or a number
    };

    FontSet fonts;
    Family bulletFont = noFamily;
    /// The bullet is in the font of the text, whatever font the levels below give it.
    bool bulletFollowsText = false;
    Bullet bullet = Bullet::Unset;

    /// Takes over a:buFont, a:buFontTx, a:buChar, a:buAutoNum, a:buBlip or a:buNone; ignores other
    /// elements.
    void readBullet(const XmlElement &element, FontUsage &usage);

    void inherit(const TextLevel &below);
};

using TextLevels = std::array<TextLevel, 9>;

/// Reads a list style: one element for each level.
class TextLevelsReader
{
public:
    explicit TextLevelsReader(FontUsage &usage) : m_usage(usage) {}

    /// What follows belongs to @p levels; null when it belongs to no list style.
    void setTarget(TextLevels *levels);

    bool isReading() const { return m_levels != nullptr; }

    void startElement(const XmlElement &element);
    void endElement(Tag tag);

private:
    FontUsage &m_usage;
    TextLevels *m_levels = nullptr;
    TextLevel *m_level = nullptr;
    bool m_inRunProperties = false;
};

} // namespace programs
