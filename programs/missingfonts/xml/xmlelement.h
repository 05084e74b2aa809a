#pragma once

#include <charconv>
#include <string>
#include <string_view>
#include <vector>

#include "programs/missingfonts/xml/xmlnames.h"
#include "programs/missingfonts/xml/xmlnamespaces.h"
#include "programs/missingfonts/xml/xmltext.h"

namespace programs {

/// The start of an element; valid only while the handler is called.
class XmlElement
{
public:
    /// As written: the entities in the value are not resolved.
    struct Attribute
    {
        std::string_view name;
        std::string_view value;
    };

    XmlElement(Tag tag, const std::vector<Attribute> &attributes, const XmlNamespaces &namespaces)
        : m_tag(tag), m_attributes(attributes), m_namespaces(namespaces)
    {
    }

    Tag tag() const { return m_tag; }

    bool has(Vocabulary vocabulary, std::string_view localName) const
    {
        return find(vocabulary, localName) != nullptr;
    }

    /// The attribute's value in UTF-8; empty when it is absent.
    std::string attribute(Vocabulary vocabulary, std::string_view localName) const
    {
        const Attribute *found = find(vocabulary, localName);
        if (!found)
            return {};
        std::string value;
        appendXmlText(value, found->value);
        return value;
    }

    /// The attribute as a number; @p fallback when it is absent or not a number.
    int number(Vocabulary vocabulary, std::string_view localName, int fallback) const
    {
        const Attribute *found = find(vocabulary, localName);
        if (!found)
            return fallback;
        const std::string_view text = found->value;
        int value = fallback;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
        return result.ec == std::errc() ? value : fallback;
    }

    /// The value of a yes-or-no attribute: yes unless it says otherwise.
    bool isOn(Vocabulary vocabulary, std::string_view localName) const
    {
        const Attribute *found = find(vocabulary, localName);
        return !found || (found->value != "0" && found->value != "false" && found->value != "off");
    }

private:
    const Attribute *find(Vocabulary vocabulary, std::string_view localName) const
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

    Tag m_tag;
    const std::vector<Attribute> &m_attributes;
    const XmlNamespaces &m_namespaces;
};

/// Takes what an XmlScanner finds in a part.
class XmlHandler
{
public:
    virtual ~XmlHandler() = default;

    /// An element begins. False leaves out all that it contains; its end is then not reported
    /// either.
    virtual bool startElement(const XmlElement &element) = 0;

    virtual void endElement(Tag) {}

    /// A piece of character data: UTF-8, entities resolved. A text may come in several pieces, none
    /// of which ends inside a character.
    virtual void text(std::string_view) {}
};

} // namespace programs
