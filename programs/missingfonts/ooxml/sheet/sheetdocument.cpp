#include "programs/missingfonts/ooxml/sheet/sheetdocument.h"

#include <unordered_map>

#include "programs/missingfonts/ooxml/drawing/drawingtext.h"
#include "programs/missingfonts/ooxml/drawing/themefonts.h"
#include "programs/missingfonts/ooxml/sheet/binarysheet.h"
#include "programs/missingfonts/ooxml/sheet/sharedstrings.h"
#include "programs/missingfonts/ooxml/sheet/sheetcells.h"
#include "programs/missingfonts/ooxml/sheet/sheetstyles.h"
#include "programs/missingfonts/package/archivepackage.h"
#include "programs/missingfonts/package/relationships.h"

namespace standin {

namespace {

using Parts = std::unordered_map<std::string, Relation>;

void addTargets(Parts &parts, const Relationships &relationships, const std::string &source,
                std::initializer_list<Relation> types)
{
    for (const Relation type : types) {
        for (const std::string &target : relationships.targets(source, type))
            parts.emplace(target, type);
    }
}

/// The sheets with their comments, drawings and the drawings' charts.
Parts textParts(const Relationships &relationships, const std::string &mainPart)
{
    Parts sheets;
    addTargets(sheets, relationships, mainPart, {Relation::Worksheet});
    Parts all = sheets;
    for (const auto &[sheet, sheetType] : sheets) {
        addTargets(all, relationships, sheet, {Relation::Comments});
        for (const std::string &drawing : relationships.targets(sheet, Relation::Drawing)) {
            all.emplace(drawing, Relation::Drawing);
            addTargets(all, relationships, drawing, {Relation::Chart, Relation::DiagramDrawing});
        }
    }
    return all;
}

bool isBinary(const std::string &name)
{
    return name.size() > 4 && name.compare(name.size() - 4, 4, ".bin") == 0;
}

/// The parts of a workbook on which the meaning of its cells depends.
struct Workbook
{
    explicit Workbook(FontUsage &usage) : theme(usage), styles(usage), strings(usage, used) {}

    BinarySheetTarget binaryTarget(FontUsage &usage)
    {
        return {usage, used, styles, strings, usedFontNumbers};
    }

    SheetFonts used;
    std::set<std::uint32_t> usedFontNumbers;
    ThemeFonts theme;
    SheetStyles styles;
    SharedStrings strings;
};

void readContextPart(PackagePart &part, Relation type, Workbook &workbook, FontUsage &usage)
{
    if (type == Relation::Theme)
        part.read(workbook.theme);
    else if (isBinary(part.name()))
        readBinarySheetPart(part, workbook.binaryTarget(usage));
    else if (type == Relation::Styles)
        part.read(workbook.styles);
    else
        part.read(workbook.strings);
}

void readTextPart(PackagePart &part, Relation type, Workbook &workbook, FontUsage &usage)
{
    if (type == Relation::Worksheet || type == Relation::Comments) {
        if (isBinary(part.name())) {
            readBinarySheetPart(part, workbook.binaryTarget(usage));
            return;
        }
        SheetCells cells(usage, workbook.used, workbook.styles, workbook.strings);
        part.read(cells);
        return;
    }
    DrawingText text(usage, workbook.theme);
    part.read(text);
}

} // namespace

void readWorkbook(ArchivePackage &package, const Relationships &relationships,
                  const std::string &mainPart, FontUsage &usage)
{
    Workbook workbook(usage);
    Parts context;
    addTargets(context, relationships, mainPart,
               {Relation::Theme, Relation::Styles, Relation::SharedStrings});
    package.visit([&](const std::string &name) { return context.count(name) != 0; },
                  [&](PackagePart &part) {
                      readContextPart(part, context.at(part.name()), workbook, usage);
                  });
    const Parts parts = textParts(relationships, mainPart);
    package.visit(
        [&](const std::string &name) { return parts.count(name) != 0; },
        [&](PackagePart &part) { readTextPart(part, parts.at(part.name()), workbook, usage); });
    for (const std::uint32_t number : workbook.usedFontNumbers)
        workbook.used.insert(workbook.styles.fontByNumber(number));
    for (const SheetFont &font : workbook.used)
        usage.use(font.resolved(workbook.theme));
}

} // namespace standin
