#pragma once

#include <array>

#include "programs/missingfonts/common/fontusage.h"
#include "programs/missingfonts/xml/xmlnames.h"

namespace standin {

class XmlElement;

/// The fonts that one set of a drawing's run properties names.
struct TextFonts
{
    Family latin = noFamily;
    Family eastAsian = noFamily;
    Family complex = noFamily;
    Family symbol = noFamily;

    /// Takes over a:latin, a:ea, a:cs or a:sym.
    void read(const XmlElement &element, FontUsage &usage);

    void inherit(const TextFonts &below);
};

/// How the paragraphs of one outline level are set.
struct TextLevel
{
    enum class Bullet {
        Unset,
        None,
        Font ///< a character or a number
    };

    TextFonts fonts;
    Family bulletFont = noFamily;
    /// The bullet is in the font of the text, whatever font the levels below give it.
    bool bulletFollowsText = false;
    Bullet bullet = Bullet::Unset;

    /// Takes over a:buFont, a:buFontTx, a:buChar, a:buAutoNum, a:buBlip or a:buNone; other elements
    /// are ignored.
    void readBullet(const XmlElement &element, FontUsage &usage);

    void inherit(const TextLevel &below);
};

using TextLevels = std::array<TextLevel, 9>;

/// Reads a list style: one element for each level.
class TextLevelsReader
{
public:
    explicit TextLevelsReader(FontUsage &usage) : m_usage(usage) {}

    /// What comes belongs to @p levels; null when it belongs to no list style.
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

} // namespace standin
