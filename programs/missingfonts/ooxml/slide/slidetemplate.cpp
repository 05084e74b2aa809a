#include "programs/missingfonts/ooxml/slide/slidetemplate.h"

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

PlaceholderKey PlaceholderKey::read(const XmlElement &element)
{
    PlaceholderKey key;
    key.type = element.attribute(Vocabulary::None, "type");
    if (key.type.empty())
        key.type = "obj";
    key.index = element.number(Vocabulary::None, "idx", 0);
    return key;
}

std::string PlaceholderKey::masterType() const
{
    if (type == "title" || type == "ctrTitle")
        return "title";
    if (type == "dt" || type == "ftr" || type == "sldNum" || type == "hdr")
        return type;
    return "body";
}

const TextLevels *SlideTemplate::byIndex(const PlaceholderKey &key) const
{
    for (const Placeholder &placeholder : m_placeholders) {
        if (placeholder.key.index == key.index && placeholder.key.masterType() == key.masterType())
            return &placeholder.levels;
    }
    return byType(key);
}

const TextLevels *SlideTemplate::byType(const PlaceholderKey &key) const
{
    for (const Placeholder &placeholder : m_placeholders) {
        if (placeholder.key.masterType() == key.masterType())
            return &placeholder.levels;
    }
    return nullptr;
}

const TextLevels &SlideTemplate::textStyle(const PlaceholderKey &key) const
{
    const std::string type = key.masterType();
    return type == "title" ? m_title : type == "body" ? m_body : m_other;
}

bool SlideTemplate::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case presentationTag("sp"):
        m_inPlaceholder = false;
        break;
    case presentationTag("ph"):
        if (m_placeholders.size() >= limits::placeholders)
            throw DocumentError("a slide layout has too many placeholders");
        m_placeholders.push_back({PlaceholderKey::read(element), {}});
        m_inPlaceholder = true;
        break;
    case drawingTag("lstStyle"):
        m_levelsReader.setTarget(m_inPlaceholder ? &m_placeholders.back().levels : nullptr);
        break;
    case presentationTag("titleStyle"):
        m_levelsReader.setTarget(&m_title);
        break;
    case presentationTag("bodyStyle"):
    case presentationTag("notesStyle"):
        m_levelsReader.setTarget(&m_body);
        break;
    case presentationTag("otherStyle"):
        m_levelsReader.setTarget(&m_other);
        break;
    default:
        m_levelsReader.startElement(element);
        break;
    }
    return true;
}

void SlideTemplate::endElement(Tag tag)
{
    m_levelsReader.endElement(tag);
    switch (tag) {
    case presentationTag("sp"):
        m_inPlaceholder = false;
        break;
    case drawingTag("lstStyle"):
    case presentationTag("titleStyle"):
    case presentationTag("bodyStyle"):
    case presentationTag("notesStyle"):
    case presentationTag("otherStyle"):
        m_levelsReader.setTarget(nullptr);
        break;
    default:
        break;
    }
}

} // namespace standin
