#pragma once

#include <string_view>

#include "programs/missingfonts/xml/xmlnames.h"

namespace standin {

class XmlElement;

/// Takes what an XmlScanner finds in a part.
class XmlHandler
{
public:
    virtual ~XmlHandler() = default;

    /// An element begins. False leaves out all that it holds; its end is then not reported either.
    virtual bool startElement(const XmlElement &element) = 0;

    virtual void endElement(Tag) {}

    /// A piece of character data: UTF-8, entities resolved. A text may come in several pieces, none
    /// of which ends inside a character.
    virtual void text(std::string_view) {}
};

} // namespace standin
