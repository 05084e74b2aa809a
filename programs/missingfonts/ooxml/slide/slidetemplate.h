#pragma once

#include <string>
#include <vector>

#include "programs/missingfonts/ooxml/drawing/textlevels.h"
#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

/// What makes a shape one that a layout or master prepares.
struct PlaceholderKey
{
    std::string type; ///< "obj" when the shape names none
    int index = 0;

    /// Reads a p:ph element.
    static PlaceholderKey read(const XmlElement &element);

    /// The type by which masters know it: they have one title and one body.
    std::string masterType() const;
};

/// The list styles that a slide layout, a slide master or the notes master gives to what is based
/// on it.
class SlideTemplate : public XmlHandler
{
public:
    explicit SlideTemplate(FontUsage &usage) : m_levelsReader(usage) {}

    /// For a layout: the placeholder of that index, or else of that type. Null when there is none.
    const TextLevels *byIndex(const PlaceholderKey &key) const;

    /// For a master: the placeholder of that type. Null when there is none.
    const TextLevels *byType(const PlaceholderKey &key) const;

    /// The master's own text style for such a placeholder.
    const TextLevels &textStyle(const PlaceholderKey &key) const;

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;

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

} // namespace standin
