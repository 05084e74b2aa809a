#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "programs/missingfonts/xml/xmlnames.h"

namespace standin {

class XmlNamespaces;

/// The start of an element; valid only while the handler is called.
class XmlElement
{
public:
    /// As written: the value's entities are not resolved.
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

    /// The attribute's value in UTF-8; empty when it is not there.
    std::string attribute(Vocabulary vocabulary, std::string_view localName) const;

    /// The value of a number; @p fallback when it is not there or is not a number.
    int number(Vocabulary vocabulary, std::string_view localName, int fallback) const;

    /// For attributes that say yes or no: yes unless it is written otherwise.
    bool isOn(Vocabulary vocabulary, std::string_view localName) const;

private:
    const Attribute *find(Vocabulary vocabulary, std::string_view localName) const;

    Tag m_tag;
    const std::vector<Attribute> &m_attributes;
    const XmlNamespaces &m_namespaces;
};

} // namespace standin
