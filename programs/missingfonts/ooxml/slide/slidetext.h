#pragma once

#include "programs/missingfonts/ooxml/drawing/drawingtext.h"

namespace standin {

class SlideTemplate;

/// What the text of a slide inherits; a part without a layout or master has an empty one.
struct SlideContext
{
    const ThemeFonts &theme;
    const TextLevels &defaultTextStyle;
    const SlideTemplate &layout;
    const SlideTemplate &master;
};

/// Reads the text of a slide, of notes, or of what a layout or master shows on its slides.
class SlideText : public DrawingText
{
public:
    enum class Placeholders {
        Read,
        LeaveOut ///< in layouts and masters they hold sample text only
    };

    SlideText(FontUsage &usage, const SlideContext &context, Placeholders placeholders);

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;
    void text(std::string_view text) override;

private:
    std::vector<const TextLevels *> placeholderStyles(const XmlElement &element) const;

    SlideContext m_context;
    Placeholders m_placeholders;
    bool m_isLeftOut = false;
};

} // namespace standin
