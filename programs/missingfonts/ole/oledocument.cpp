#include "programs/missingfonts/ole/oledocument.h"

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/fontusage.h"
#include "programs/missingfonts/ole/compoundfile.h"
#include "programs/missingfonts/ole/olefonts.h"

namespace standin {

namespace {

const std::string textStream = "WordDocument";
const std::string sheetStream = "Workbook";
const std::string oldSheetStream = "Book";
const std::string presentationStream = "PowerPoint Document";
const std::string encryptedStream = "EncryptedPackage";

} // namespace

void readOleDocument(QIODevice &file, FontUsage &usage)
{
    CompoundFile compound(file);
    if (compound.contains(encryptedStream))
        throw DocumentError("the document is encrypted");
    if (compound.contains(textStream))
        readTextFontTable(compound, textStream, usage);
    else if (compound.contains(sheetStream))
        readSheetFontRecords(compound, sheetStream, usage);
    else if (compound.contains(presentationStream))
        readPresentationFonts(compound, presentationStream, usage);
    else if (compound.contains(oldSheetStream))
        throw DocumentError("the workbook is older than the formats that can be read");
    else
        throw DocumentError("the document is of a format that cannot be read");
}

} // namespace standin
