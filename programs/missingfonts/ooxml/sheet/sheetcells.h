#pragma once

#include <string>

#include "programs/missingfonts/ooxml/sheet/richtext.h"
#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

class SharedStrings;
class SheetStyles;

/// Reads a worksheet, or the comments of one, and notes the fonts that its texts and numbers are
/// set in.
class SheetCells : public XmlHandler
{
public:
    SheetCells(FontUsage &usage, SheetFonts &used, const SheetStyles &styles,
               const SharedStrings &strings)
        : m_usage(usage),
          m_used(used),
          m_styles(styles),
          m_strings(strings),
          m_richText(usage, used)
    {
    }

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;
    void text(std::string_view text) override;

private:
    enum class Place {
        Elsewhere,
        Value,
        RichText,
        PageHeading
    };

    void endCell();
    void endPageHeading();
    void useFormat(std::size_t format);

    FontUsage &m_usage;
    SheetFonts &m_used;
    const SheetStyles &m_styles;
    const SharedStrings &m_strings;
    RichText m_richText;
    std::string m_value;
    std::size_t m_format = 0;
    Place m_place = Place::Elsewhere;
    bool m_isShared = false;
    bool m_hasOwnText = false;
};

} // namespace standin
