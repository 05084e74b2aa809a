#include "programs/missingfonts/ooxml/slide/presentationdocument.h"

#include <map>
#include <set>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/ooxml/drawing/themefonts.h"
#include "programs/missingfonts/ooxml/slide/presentationproperties.h"
#include "programs/missingfonts/ooxml/slide/slidetemplate.h"
#include "programs/missingfonts/ooxml/slide/slidetext.h"
#include "programs/missingfonts/package/archivepackage.h"
#include "programs/missingfonts/package/relationships.h"

namespace standin {

namespace {

/// A part with text, and what it is based on; empty names for what it has not.
struct TextPart
{
    std::string layout;
    std::string master;
    std::string theme;
    bool isTemplate = false;
    bool isDrawing = false;
};

/// Finds the parts that show text and those that say how it looks.
class PresentationParts
{
public:
    PresentationParts(const Relationships &relationships, const std::string &mainPart)
        : m_relationships(relationships)
    {
        for (const std::string &slide : relationships.targets(mainPart, Relation::Slide))
            addSlide(slide);
    }

    const std::map<std::string, TextPart> &textParts() const { return m_textParts; }

    std::set<std::string> templates() const
    {
        std::set<std::string> names;
        for (const auto &[name, part] : m_textParts) {
            names.insert(part.layout);
            names.insert(part.master);
        }
        names.erase(std::string());
        return names;
    }

    std::set<std::string> themes() const
    {
        std::set<std::string> names;
        for (const auto &[name, part] : m_textParts)
            names.insert(part.theme);
        names.erase(std::string());
        return names;
    }

private:
    void addSlide(const std::string &slide)
    {
        TextPart part;
        part.layout = m_relationships.target(slide, Relation::SlideLayout);
        part.master = m_relationships.target(part.layout, Relation::SlideMaster);
        part.theme = m_relationships.target(part.master, Relation::Theme);
        add(slide, part);
        const std::string notes = m_relationships.target(slide, Relation::NotesSlide);
        if (!notes.empty())
            addNotes(notes);
        part.isTemplate = true;
        if (!part.layout.empty())
            add(part.layout, part);
        if (!part.master.empty())
            add(part.master, part);
    }

    void addNotes(const std::string &notes)
    {
        TextPart part;
        part.master = m_relationships.target(notes, Relation::NotesMaster);
        part.theme = m_relationships.target(part.master, Relation::Theme);
        add(notes, part);
    }

    void add(const std::string &name, const TextPart &part)
    {
        if (!m_textParts.emplace(name, part).second)
            return;
        TextPart drawing = part;
        drawing.isDrawing = true;
        for (const Relation type : {Relation::Chart, Relation::DiagramDrawing}) {
            for (const std::string &target : m_relationships.targets(name, type))
                m_textParts.emplace(target, drawing);
        }
    }

    const Relationships &m_relationships;
    std::map<std::string, TextPart> m_textParts;
};

template<typename Value>
const Value *find(const std::map<std::string, Value> &values, const std::string &name)
{
    const auto found = values.find(name);
    return found == values.end() ? nullptr : &found->second;
}

} // namespace

void readPresentation(ArchivePackage &package, const Relationships &relationships,
                      const std::string &mainPart, FontUsage &usage)
{
    const PresentationParts parts(relationships, mainPart);
    PresentationProperties properties(usage);
    std::map<std::string, ThemeFonts> themes;
    std::map<std::string, SlideTemplate> templates;
    for (const std::string &name : parts.themes())
        themes.emplace(name, usage);
    for (const std::string &name : parts.templates())
        templates.emplace(name, usage);
    if (templates.size() > limits::slideTemplates || themes.size() > limits::slideTemplates)
        throw DocumentError("the presentation has too many layouts");
    std::map<std::string, XmlHandler *> context = {{mainPart, &properties}};
    for (auto &[name, theme] : themes)
        context.emplace(name, &theme);
    for (auto &[name, slideTemplate] : templates)
        context.emplace(name, &slideTemplate);
    package.visit([&](const std::string &name) { return context.count(name) != 0; },
                  [&](PackagePart &part) { part.read(*context.at(part.name())); });

    const ThemeFonts noTheme(usage);
    package.visit([&](const std::string &name) { return parts.textParts().count(name) != 0; },
                  [&](PackagePart &part) {
                      const TextPart &textPart = parts.textParts().at(part.name());
                      const ThemeFonts *theme = find(themes, textPart.theme);
                      const SlideContext slideContext = {
                          theme ? *theme : noTheme, properties.defaultTextStyle(),
                          find(templates, textPart.layout), find(templates, textPart.master)};
                      if (textPart.isDrawing) {
                          DrawingText text(usage, slideContext.theme);
                          part.read(text);
                          return;
                      }
                      SlideText text(usage, slideContext,
                                     textPart.isTemplate ? SlideText::Placeholders::LeaveOut
                                                         : SlideText::Placeholders::Read);
                      part.read(text);
                  });
}

} // namespace standin
