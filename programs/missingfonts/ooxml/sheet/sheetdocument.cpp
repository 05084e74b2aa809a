#include "programs/missingfonts/ooxml/sheet/sheetdocument.h"

#include "programs/missingfonts/ooxml/drawing/drawingtext.h"
#include "programs/missingfonts/ooxml/sheet/binarysheet.h"
#include "programs/missingfonts/ooxml/sheet/sheetcells.h"
#include "programs/missingfonts/package/archivepackage.h"
#include "programs/missingfonts/package/partname.h"
#include "programs/missingfonts/package/relationships.h"

namespace programs {

namespace {

/// Reads a part that may be binary; @p handler takes one that is not.
void readSheetPart(PackagePart &part, XmlHandler &handler, Workbook &workbook)
{
    if (endsWith(part.name(), ".bin"))
        readBinarySheetPart(part, workbook);
    else
        part.read(handler);
}

PartReaders contextReaders(const Relationships &relationships, const std::string &mainPart,
                           Workbook &workbook)
{
    PartReaders readers;
    for (const std::string &name : relationships.targets(mainPart, {"theme"}))
        readers.emplace(name, readerFor(workbook.theme));
    for (const std::string &name : relationships.targets(mainPart, {"styles"}))
        readers.emplace(name,
                        [&](PackagePart &part) { readSheetPart(part, workbook.styles, workbook); });
    for (const std::string &name : relationships.targets(mainPart, {"sharedStrings"}))
        readers.emplace(
            name, [&](PackagePart &part) { readSheetPart(part, workbook.strings, workbook); });
    return readers;
}

/// The sheets with their comments, drawings and the drawings' charts.
PartReaders textReaders(const Relationships &relationships, const std::string &mainPart,
                        Workbook &workbook)
{
    const auto readCells = [&workbook](PackagePart &part) {
        SheetCells cells(workbook);
        readSheetPart(part, cells, workbook);
    };
    const auto readDrawing = [&workbook](PackagePart &part) {
        DrawingText text(workbook.usage, workbook.theme);
        part.read(text);
    };
    PartReaders readers;
    const std::vector<std::string> sheets =
        relationships.targets(mainPart, {"worksheet", "chartsheet", "dialogsheet", "xlMacrosheet"});
    for (const std::string &sheet : sheets)
        readers.emplace(sheet, readCells);
    for (const std::string &sheet : sheets) {
        for (const std::string &comments : relationships.targets(sheet, {"comments"}))
            readers.emplace(comments, readCells);
        for (const std::string &drawing : relationships.targets(sheet, {"drawing"})) {
            readers.emplace(drawing, readDrawing);
            for (const std::string &chart :
                 relationships.targets(drawing, {"chart", "diagramDrawing"}))
                readers.emplace(chart, readDrawing);
        }
    }
    return readers;
}

} // namespace

void readWorkbook(ArchivePackage &package, const Relationships &relationships,
                  const std::string &mainPart, FontUsage &usage)
{
    Workbook workbook(usage);
    package.read(contextReaders(relationships, mainPart, workbook));
    package.read(textReaders(relationships, mainPart, workbook));
    workbook.finish();
}

} // namespace programs
