#include "programs/missingfonts/ooxml/word/wordsettings.h"

#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

bool WordSettings::startElement(const XmlElement &element)
{
    if (element.tag() == Tag::WordThemeFontLanguage) {
        m_eastAsianLanguage = element.attribute(Vocabulary::Word, "eastAsia");
        m_complexLanguage = element.attribute(Vocabulary::Word, "bidi");
    }
    return true;
}

} // namespace standin
