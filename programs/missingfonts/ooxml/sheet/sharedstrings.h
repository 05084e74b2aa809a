#pragma once

#include <vector>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/ooxml/sheet/richtext.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

/// The texts that the cells of a workbook share; of each only whether it uses the cell's font.
class SharedStrings : public XmlHandler
{
public:
    SharedStrings(FontUsage &usage, SheetFonts &used) : m_richText(usage, used) {}

    bool usesCellFont(std::size_t index) const
    {
        return index < m_usesCellFont.size() && m_usesCellFont[index];
    }

    /// Also for readers of the binary form.
    void add(bool usesCellFont)
    {
        if (m_usesCellFont.size() >= limits::sharedStrings)
            throw DocumentError("the workbook has too many texts");
        m_usesCellFont.push_back(usesCellFont);
    }

    bool startElement(const XmlElement &element) override
    {
        if (element.tag() != sheetTag("si"))
            return m_richText.startElement(element);
        m_richText.begin();
        return true;
    }

    void endElement(Tag tag) override
    {
        if (tag == sheetTag("si"))
            add(m_richText.usesCellFont());
        else
            m_richText.endElement(tag);
    }

    void text(std::string_view text) override { m_richText.text(text); }

private:
    RichText m_richText;
    std::vector<bool> m_usesCellFont;
};

} // namespace programs
