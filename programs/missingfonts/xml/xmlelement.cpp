#include "programs/missingfonts/xml/xmlelement.h"

#include <charconv>

#include "programs/missingfonts/xml/xmlnamespaces.h"
#include "programs/missingfonts/xml/xmltext.h"

namespace standin {

const XmlElement::Attribute *XmlElement::find(Vocabulary vocabulary,
                                              std::string_view localName) const
{
    for (const Attribute &attribute : m_attributes) {
        const std::string_view name = attribute.name;
        if (name.size() < localName.size() ||
            name.substr(name.size() - localName.size()) != localName)
            continue;
        if (name.size() == localName.size()) {
            if (vocabulary == Vocabulary::None)
                return &attribute;
            continue;
        }
        const std::size_t colon = name.size() - localName.size() - 1;
        if (name[colon] == ':' && m_namespaces.vocabulary(name.substr(0, colon)) == vocabulary)
            return &attribute;
    }
    return nullptr;
}

std::string XmlElement::attribute(Vocabulary vocabulary, std::string_view localName) const
{
    const Attribute *found = find(vocabulary, localName);
    if (!found)
        return {};
    std::string value;
    appendXmlText(value, found->value);
    return value;
}

int XmlElement::number(Vocabulary vocabulary, std::string_view localName, int fallback) const
{
    const Attribute *found = find(vocabulary, localName);
    if (!found)
        return fallback;
    const std::string_view text = found->value;
    int value = fallback;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() ? value : fallback;
}

bool XmlElement::isOn(Vocabulary vocabulary, std::string_view localName) const
{
    const Attribute *found = find(vocabulary, localName);
    return !found || (found->value != "0" && found->value != "false" && found->value != "off");
}

} // namespace standin
