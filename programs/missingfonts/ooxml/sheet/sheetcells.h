#pragma once

#include <string>

#include "programs/missingfonts/ooxml/sheet/workbook.h"

namespace programs {

/// Reads a worksheet, or the comments of one, and marks the fonts of its texts and numbers as used.
class SheetCells : public XmlHandler
{
public:
    explicit SheetCells(Workbook &workbook)
        : m_workbook(workbook), m_richText(workbook.usage, workbook.used)
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

    Workbook &m_workbook;
    RichText m_richText;
    std::string m_value;
    std::size_t m_format = 0;
    Place m_place = Place::Elsewhere;
    bool m_isShared = false;
    bool m_hasOwnText = false;
};

} // namespace programs
