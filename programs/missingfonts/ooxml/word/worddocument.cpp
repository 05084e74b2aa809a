#include "programs/missingfonts/ooxml/word/worddocument.h"

#include <unordered_map>

#include "programs/missingfonts/ooxml/drawing/drawingtext.h"
#include "programs/missingfonts/ooxml/drawing/themefonts.h"
#include "programs/missingfonts/ooxml/word/wordfonttable.h"
#include "programs/missingfonts/ooxml/word/wordnumbering.h"
#include "programs/missingfonts/ooxml/word/wordsettings.h"
#include "programs/missingfonts/ooxml/word/wordstyles.h"
#include "programs/missingfonts/ooxml/word/wordtext.h"
#include "programs/missingfonts/package/archivepackage.h"
#include "programs/missingfonts/package/relationships.h"

namespace standin {

namespace {

/// The parts that hold text, and whether it is a drawing's.
std::unordered_map<std::string, bool> textParts(const Relationships &relationships,
                                                const std::string &mainPart)
{
    std::unordered_map<std::string, bool> parts = {{mainPart, false}};
    for (const Relation type : {Relation::Header, Relation::Footer, Relation::Footnotes,
                                Relation::Endnotes, Relation::Comments}) {
        for (const std::string &part : relationships.targets(mainPart, type))
            parts.emplace(part, false);
    }
    std::unordered_map<std::string, bool> all = parts;
    for (const auto &[part, isDrawing] : parts) {
        for (const Relation type : {Relation::Chart, Relation::DiagramDrawing}) {
            for (const std::string &drawing : relationships.targets(part, type))
                all.emplace(drawing, true);
        }
    }
    return all;
}

} // namespace

void readWordDocument(ArchivePackage &package, const Relationships &relationships,
                      const std::string &mainPart, FontUsage &usage)
{
    ThemeFonts theme(usage);
    WordStyles styles(usage);
    WordNumbering numbering(usage);
    WordFontTable fontTable(usage);
    WordSettings settings;
    std::unordered_map<std::string, XmlHandler *> context;
    const auto add = [&](Relation type, XmlHandler &handler) {
        const std::string part = relationships.target(mainPart, type);
        if (!part.empty())
            context.emplace(part, &handler);
    };
    add(Relation::Theme, theme);
    add(Relation::Styles, styles);
    add(Relation::Numbering, numbering);
    add(Relation::FontTable, fontTable);
    add(Relation::Settings, settings);
    package.visit([&](const std::string &name) { return context.count(name) != 0; },
                  [&](PackagePart &part) { part.read(*context.at(part.name())); });
    styles.resolve();

    const WordContext wordContext = {styles, numbering, theme, settings};
    const std::unordered_map<std::string, bool> parts = textParts(relationships, mainPart);
    package.visit([&](const std::string &name) { return parts.count(name) != 0; },
                  [&](PackagePart &part) {
                      if (parts.at(part.name())) {
                          DrawingText text(usage, theme);
                          part.read(text);
                      } else {
                          WordText text(usage, wordContext);
                          part.read(text);
                      }
                  });
}

} // namespace standin
