#include "programs/missingfonts/ooxml/word/worddocument.h"

#include <vector>

#include "programs/missingfonts/ooxml/drawing/drawingtext.h"
#include "programs/missingfonts/ooxml/drawing/themefonts.h"
#include "programs/missingfonts/ooxml/word/wordfonttable.h"
#include "programs/missingfonts/ooxml/word/wordnumbering.h"
#include "programs/missingfonts/ooxml/word/wordsettings.h"
#include "programs/missingfonts/ooxml/word/wordstyles.h"
#include "programs/missingfonts/ooxml/word/wordtext.h"
#include "programs/missingfonts/package/archivepackage.h"
#include "programs/missingfonts/package/relationships.h"

namespace programs {

void readWordDocument(ArchivePackage &package, const Relationships &relationships,
                      const std::string &mainPart, FontUsage &usage)
{
    ThemeFonts theme(usage);
    WordStyles styles(usage);
    WordNumbering numbering(usage);
    WordFontTable fontTable(usage);
    WordSettings settings;
    PartReaders context;
    const auto readContext = [&](std::string_view type, XmlHandler &handler) {
        context.emplace(relationships.target(mainPart, type), readerFor(handler));
    };
    readContext("theme", theme);
    readContext("styles", styles);
    readContext("numbering", numbering);
    readContext("fontTable", fontTable);
    readContext("settings", settings);
    package.read(context);
    styles.resolve();

    const WordContext wordContext = {styles, numbering, theme, settings};
    std::vector<std::string> texts =
        relationships.targets(mainPart, {"header", "footer", "footnotes", "endnotes", "comments"});
    texts.push_back(mainPart);
    PartReaders readers;
    for (const std::string &name : texts) {
        readers.emplace(name, [&](PackagePart &part) {
            WordText text(usage, wordContext);
            part.read(text);
        });
    }
    for (const std::string &name : texts) {
        for (const std::string &drawing :
             relationships.targets(name, {"chart", "diagramDrawing"})) {
            readers.emplace(drawing, [&](PackagePart &part) {
                DrawingText text(usage, theme);
                part.read(text);
            });
        }
    }
    package.read(readers);
}

} // namespace programs
