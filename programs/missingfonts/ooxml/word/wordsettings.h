#pragma once

#include <string>

#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

/// Reads from a text document's settings the languages for which its theme's fonts are meant.
class WordSettings : public XmlHandler
{
public:
    const std::string &eastAsianLanguage() const { return m_eastAsianLanguage; }
    const std::string &complexLanguage() const { return m_complexLanguage; }

    bool startElement(const XmlElement &element) override;

private:
    std::string m_eastAsianLanguage;
    std::string m_complexLanguage;
};

} // namespace standin
