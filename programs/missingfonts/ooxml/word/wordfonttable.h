#pragma once

#include <string>

#include "programs/missingfonts/common/fontusage.h"
#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

/// Reads a text document's table of fonts: which of them the document carries itself, and their
/// other names.
class WordFontTable : public XmlHandler
{
public:
    explicit WordFontTable(FontUsage &usage) : m_usage(usage) {}

    bool startElement(const XmlElement &element) override;

private:
    FontUsage &m_usage;
    Family m_font = noFamily;
};

} // namespace standin
