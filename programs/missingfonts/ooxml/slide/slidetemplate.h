#pragma once

#include <string>
#include <vector>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/ooxml/drawing/textlevels.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

/// Identifies a placeholder: a shape that a layout or master prepares.
struct PlaceholderKey
{
    std::string type; ///< "obj" when the shape names none
    int index = 0;

    /// Reads a p:ph element.
    static PlaceholderKey read(const XmlElement &element)
    {
        PlaceholderKey key;
        key.type = element.attribute(Vocabulary::None, "type");
        if (key.type.empty())
            key.type = "obj";
        key.index = element.number(Vocabulary::None, "idx", 0);
        return key;
    }

    /// Its type in masters, which have one title and one body.
    std::string masterType() const
    {
        if (type == "title" || type == "ctrTitle")
            return "title";
        if (type == "dt" || type == "ftr" || type == "sldNum" || type == "hdr")
            return type;
        return "body";
    }
};

/// Reads the list styles that a slide layout, a slide master or the notes master passes on to what
/// is based on it.
class SlideTemplate : public XmlHandler
{
public:
    explicit SlideTemplate(FontUsage &usage) : m_levelsReader(usage) {}

    /// For a layout: the placeholder of that index, else of that type; null for none.
    const TextLevels *byIndex(const PlaceholderKey &key) const
    {
        for (const Placeholder &placeholder : m_placeholders) {
            if (placeholder.key.index == key.index &&
                placeholder.key.masterType() == key.masterType())
                return &placeholder.levels;
        }
        return byType(key);
    }

    /// For a master: the placeholder of that type; null for none.
    const TextLevels *byType(const PlaceholderKey &key) const
    {
        for (const Placeholder &placeholder : m_placeholders) {
            if (placeholder.key.masterType() == key.masterType())
                return &placeholder.levels;
        }
        return nullptr;
    }

    /// The master's own text style for such a placeholder.
    const TextLevels &textStyle(const PlaceholderKey &key) const
    {
        const std::string type = key.masterType();
        return type == "title" ? m_title : type == "body" ? m_body : m_other;
    }

    bool startElement(const XmlElement &element) override
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

    void endElement(Tag tag) override
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

private:
    struct Placeholder
    {
        PlaceholderKey key;
        TextLevels levels;
    };

    TextLevelsReader m_levelsReader;
    std::vector<Placeholder> m_placeholders;
    TextLevels m_title;
    TextLevels m_body;
    TextLevels m_other;
    bool m_inPlaceholder = false;
};

} // namespace programs
