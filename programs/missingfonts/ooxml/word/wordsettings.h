#pragma once

#include <string>

#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

/// Reads from a text document's settings the languages that its theme's fonts are chosen for.
class WordSettings : public XmlHandler
{
public:
    const std::string &eastAsianLanguage() const { return m_eastAsianLanguage; }
    const std::string &complexLanguage() const { return m_complexLanguage; }

    bool startElement(const XmlElement &element) override
    {
        if (element.tag() == wordTag("themeFontLang")) {
            m_eastAsianLanguage = element.attribute(Vocabulary::Word, "eastAsia");
            m_complexLanguage = element.attribute(Vocabulary::Word, "bidi");
        }
        return true;
    }

private:
    std::string m_eastAsianLanguage;
    std::string m_complexLanguage;
};

} // namespace programs
