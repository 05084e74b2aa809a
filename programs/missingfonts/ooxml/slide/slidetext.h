#pragma once

#include "programs/missingfonts/ooxml/drawing/drawingtext.h"
#include "programs/missingfonts/ooxml/slide/slidetemplate.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

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

    SlideText(FontUsage &usage, const SlideContext &context, Placeholders placeholders)
        : DrawingText(usage, context.theme), m_context(context), m_placeholders(placeholders)
    {
        beginShape({&m_context.defaultTextStyle});
    }

    bool startElement(const XmlElement &element) override
    {
        switch (element.tag()) {
        case presentationTag("sp"):
        case presentationTag("graphicFrame"):
            m_isLeftOut = false;
            beginShape({&m_context.defaultTextStyle});
            return true;
        case presentationTag("ph"):
            if (m_placeholders == Placeholders::LeaveOut)
                m_isLeftOut = true;
            else
                beginShape(placeholderStyles(element));
            return true;
        default:
            return DrawingText::startElement(element);
        }
    }

    void endElement(Tag tag) override
    {
        if (tag == presentationTag("sp") || tag == presentationTag("graphicFrame"))
            m_isLeftOut = false;
        DrawingText::endElement(tag);
    }

    void text(std::string_view text) override
    {
        if (!m_isLeftOut)
            DrawingText::text(text);
    }

private:
    std::vector<const TextLevels *> placeholderStyles(const XmlElement &element) const
    {
        const PlaceholderKey key = PlaceholderKey::read(element);
        std::vector<const TextLevels *> styles;
        for (const TextLevels *levels :
             {m_context.layout.byIndex(key), m_context.master.byType(key)}) {
            if (levels)
                styles.push_back(levels);
        }
        styles.push_back(&m_context.master.textStyle(key));
        styles.push_back(&m_context.defaultTextStyle);
        return styles;
    }

    SlideContext m_context;
    Placeholders m_placeholders;
    bool m_isLeftOut = false;
};

} // namespace programs
