#include "programs/missingfonts/ooxml/slide/presentationdocument.h"

#include <map>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/ooxml/drawing/themefonts.h"
#include "programs/missingfonts/ooxml/slide/presentationproperties.h"
#include "programs/missingfonts/ooxml/slide/slidetemplate.h"
#include "programs/missingfonts/ooxml/slide/slidetext.h"
#include "programs/missingfonts/package/archivepackage.h"
#include "programs/missingfonts/package/relationships.h"

namespace programs {

namespace {

/// A part with text, and the parts that it is based on: "" where there is none.
struct TextPart
{
    enum class Kind {
        Slide,
        Template,
        Drawing
    };

    std::string layout;
    std::string master;
    std::string theme;
    Kind kind = Kind::Slide;
};

/// Finds the parts that show text.
class PresentationParts
{
public:
    PresentationParts(const Relationships &relationships, const std::string &mainPart)
        : m_relationships(relationships)
    {
        for (const std::string &slide : relationships.targets(mainPart, {"slide"}))
            addSlide(slide);
    }

    const std::map<std::string, TextPart> &all() const { return m_parts; }

private:
    void addSlide(const std::string &slide)
    {
        const std::string layout = m_relationships.target(slide, "slideLayout");
        const std::string master = m_relationships.target(layout, "slideMaster");
        TextPart part = {layout, master, m_relationships.target(master, "theme")};
        add(slide, part);
        const std::string notes = m_relationships.target(slide, "notesSlide");
        const std::string notesMaster = m_relationships.target(notes, "notesMaster");
        add(notes, {{}, notesMaster, m_relationships.target(notesMaster, "theme")});
        part.kind = TextPart::Kind::Template;
        add(layout, part);
        add(master, part);
    }

    void add(const std::string &name, TextPart part)
    {
        if (name.empty() || !m_parts.emplace(name, part).second)
            return;
        part.kind = TextPart::Kind::Drawing;
        for (const std::string &drawing :
             m_relationships.targets(name, {"chart", "diagramDrawing"}))
            m_parts.emplace(drawing, part);
    }

    const Relationships &m_relationships;
    std::map<std::string, TextPart> m_parts;
};

/// What determines the fonts of a presentation's text. A part without a theme, layout or master has
/// the one named "", which is empty.
struct Presentation
{
    Presentation(const PresentationParts &parts, FontUsage &usage) : properties(usage)
    {
        themes.try_emplace({}, usage);
        templates.try_emplace({}, usage);
        for (const auto &[name, part] : parts.all()) {
            themes.try_emplace(part.theme, usage);
            templates.try_emplace(part.layout, usage);
            templates.try_emplace(part.master, usage);
        }
        if (templates.size() - 1 > limits::slideTemplates ||
            themes.size() - 1 > limits::slideTemplates)
            throw DocumentError("the presentation has too many layouts");
    }

    PartReaders readers(const std::string &mainPart)
    {
        PartReaders result = {{mainPart, readerFor(properties)}};
        for (auto &[name, theme] : themes)
            result.emplace(name, readerFor(theme));
        for (auto &[name, slideTemplate] : templates)
            result.emplace(name, readerFor(slideTemplate));
        return result;
    }

    void readText(PackagePart &part, const TextPart &textPart, FontUsage &usage) const
    {
        const ThemeFonts &theme = themes.at(textPart.theme);
        if (textPart.kind == TextPart::Kind::Drawing) {
            DrawingText text(usage, theme);
            part.read(text);
            return;
        }
        SlideText text(usage,
                       {theme, properties.defaultTextStyle(), templates.at(textPart.layout),
                        templates.at(textPart.master)},
                       textPart.kind == TextPart::Kind::Template ? SlideText::Placeholders::LeaveOut
                                                                 : SlideText::Placeholders::Read);
        part.read(text);
    }

    PresentationProperties properties;
    std::map<std::string, ThemeFonts> themes;
    std::map<std::string, SlideTemplate> templates;
};

} // namespace

void readPresentation(ArchivePackage &package, const Relationships &relationships,
                      const std::string &mainPart, FontUsage &usage)
{
    const PresentationParts parts(relationships, mainPart);
    Presentation presentation(parts, usage);
    package.read(presentation.readers(mainPart));
    PartReaders readers;
    for (const auto &[name, textPart] : parts.all()) {
        readers.emplace(name, [&, &textPart = textPart](PackagePart &part) {
            presentation.readText(part, textPart, usage);
        });
    }
    package.read(readers);
}

} // namespace programs
