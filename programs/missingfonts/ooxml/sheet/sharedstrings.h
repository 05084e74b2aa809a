#pragma once

#include <vector>

#include "programs/missingfonts/ooxml/sheet/richtext.h"
#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

/// The texts that the cells of a workbook share; of each only whether it is set in the cell's font.
class SharedStrings : public XmlHandler
{
public:
    SharedStrings(FontUsage &usage, SheetFonts &used) : m_richText(usage, used) {}

    bool usesCellFont(std::size_t index) const
    {
        return index < m_usesCellFont.size() && m_usesCellFont[index];
    }

    /// For readers of the binary form, too.
    void add(bool usesCellFont);

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;
    void text(std::string_view text) override { m_richText.text(text); }

private:
    RichText m_richText;
    std::vector<bool> m_usesCellFont;
};

} // namespace standin
