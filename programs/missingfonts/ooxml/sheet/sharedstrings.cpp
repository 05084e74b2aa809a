#include "programs/missingfonts/ooxml/sheet/sharedstrings.h"

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

void SharedStrings::add(bool usesCellFont)
{
    if (m_usesCellFont.size() >= limits::sharedStrings)
        throw DocumentError("the workbook has too many texts");
    m_usesCellFont.push_back(usesCellFont);
}

bool SharedStrings::startElement(const XmlElement &element)
{
    if (element.tag() != Tag::SheetStringItem)
        return m_richText.startElement(element);
    m_richText.begin();
    return true;
}

void SharedStrings::endElement(Tag tag)
{
    if (tag == Tag::SheetStringItem)
        add(m_richText.usesCellFont());
    else
        m_richText.endElement(tag);
}

} // namespace standin
