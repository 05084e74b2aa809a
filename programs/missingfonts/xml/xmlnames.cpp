#include "programs/missingfonts/xml/xmlnames.h"

#include <unordered_map>

namespace standin {

namespace {

using Tags = std::unordered_map<std::string_view, Tag>;

const Tags &wordTags()
{
    static const Tags tags = {
        {"document", Tag::WordDocument},
        {"abstractNum", Tag::WordAbstractNumbering},
        {"abstractNumId", Tag::WordAbstractNumberingReference},
        {"altName", Tag::WordAlternativeName},
        {"annotationRef", Tag::WordAnnotationReference},
        {"basedOn", Tag::WordBasedOn},
        {"cs", Tag::WordComplex},
        {"delText", Tag::WordDeletedText},
        {"rPrDefault", Tag::WordDocumentDefaults},
        {"embedBold", Tag::WordEmbedBold},
        {"embedBoldItalic", Tag::WordEmbedBoldItalic},
        {"embedItalic", Tag::WordEmbedItalic},
        {"embedRegular", Tag::WordEmbedRegular},
        {"endnoteReference", Tag::WordEndnoteReference},
        {"endnoteRef", Tag::WordEndnoteReference},
        {"font", Tag::WordFont},
        {"footnoteReference", Tag::WordFootnoteReference},
        {"footnoteRef", Tag::WordFootnoteReference},
        {"lvl", Tag::WordLevel},
        {"ilvl", Tag::WordLevelIndex},
        {"lvlText", Tag::WordLevelText},
        {"num", Tag::WordNumber},
        {"numFmt", Tag::WordNumberFormat},
        {"numId", Tag::WordNumberingId},
        {"pgNum", Tag::WordPageNumber},
        {"p", Tag::WordParagraph},
        {"pPr", Tag::WordParagraphProperties},
        {"pPrChange", Tag::WordParagraphPropertiesChange},
        {"pStyle", Tag::WordParagraphStyle},
        {"rtl", Tag::WordRightToLeft},
        {"r", Tag::WordRun},
        {"rFonts", Tag::WordRunFonts},
        {"rPrChange", Tag::WordRunPropertiesChange},
        {"rStyle", Tag::WordRunStyle},
        {"style", Tag::WordStyle},
        {"sym", Tag::WordSymbol},
        {"tbl", Tag::WordTable},
        {"tblStyle", Tag::WordTableStyle},
        {"tblStylePr", Tag::WordTableStylePart},
        {"t", Tag::WordText},
        {"themeFontLang", Tag::WordThemeFontLanguage},
    };
    return tags;
}

const Tags &drawingTags()
{
    static const Tags tags = {
        {"buAutoNum", Tag::DrawingBulletAutomatic},
        {"buChar", Tag::DrawingBulletCharacter},
        {"buFont", Tag::DrawingBulletFont},
        {"buFontTx", Tag::DrawingBulletFontOfText},
        {"buNone", Tag::DrawingBulletNone},
        {"buBlip", Tag::DrawingBulletPicture},
        {"cs", Tag::DrawingComplex},
        {"defRPr", Tag::DrawingDefaultRun},
        {"ea", Tag::DrawingEastAsian},
        {"fld", Tag::DrawingField},
        {"font", Tag::DrawingFont},
        {"fontRef", Tag::DrawingFontReference},
        {"fontScheme", Tag::DrawingFontScheme},
        {"latin", Tag::DrawingLatin},
        {"lvl1pPr", Tag::DrawingLevel1},
        {"lvl2pPr", Tag::DrawingLevel2},
        {"lvl3pPr", Tag::DrawingLevel3},
        {"lvl4pPr", Tag::DrawingLevel4},
        {"lvl5pPr", Tag::DrawingLevel5},
        {"lvl6pPr", Tag::DrawingLevel6},
        {"lvl7pPr", Tag::DrawingLevel7},
        {"lvl8pPr", Tag::DrawingLevel8},
        {"lvl9pPr", Tag::DrawingLevel9},
        {"lstStyle", Tag::DrawingListStyle},
        {"majorFont", Tag::DrawingMajorFont},
        {"minorFont", Tag::DrawingMinorFont},
        {"p", Tag::DrawingParagraph},
        {"pPr", Tag::DrawingParagraphProperties},
        {"r", Tag::DrawingRun},
        {"rPr", Tag::DrawingRunProperties},
        {"sym", Tag::DrawingSymbol},
        {"t", Tag::DrawingText},
    };
    return tags;
}

const Tags &sheetTags()
{
    static const Tags tags = {
        {"c", Tag::SheetCell},
        {"cellXfs", Tag::SheetCellFormats},
        {"text", Tag::SheetCommentText},
        {"evenFooter", Tag::SheetEvenFooter},
        {"evenHeader", Tag::SheetEvenHeader},
        {"firstFooter", Tag::SheetFirstFooter},
        {"firstHeader", Tag::SheetFirstHeader},
        {"font", Tag::SheetFont},
        {"fonts", Tag::SheetFontTable},
        {"name", Tag::SheetFontName},
        {"xf", Tag::SheetFormat},
        {"is", Tag::SheetInlineString},
        {"oddFooter", Tag::SheetOddFooter},
        {"oddHeader", Tag::SheetOddHeader},
        {"rPh", Tag::SheetPhonetic},
        {"rFont", Tag::SheetRichFontName},
        {"r", Tag::SheetRichRun},
        {"scheme", Tag::SheetScheme},
        {"si", Tag::SheetStringItem},
        {"t", Tag::SheetText},
        {"v", Tag::SheetValue},
        {"workbook", Tag::SheetWorkbook},
    };
    return tags;
}

const Tags &presentationTags()
{
    static const Tags tags = {
        {"presentation", Tag::PresentationDocument},
        {"bodyStyle", Tag::PresentationBodyStyle},
        {"notesStyle", Tag::PresentationBodyStyle},
        {"defaultTextStyle", Tag::PresentationDefaultStyle},
        {"embeddedFont", Tag::PresentationEmbeddedFont},
        {"font", Tag::PresentationFont},
        {"graphicFrame", Tag::PresentationGraphicFrame},
        {"otherStyle", Tag::PresentationOtherStyle},
        {"ph", Tag::PresentationPlaceholder},
        {"sp", Tag::PresentationShape},
        {"titleStyle", Tag::PresentationTitleStyle},
    };
    return tags;
}

const Tags &noTags()
{
    static const Tags tags;
    return tags;
}

const Tags &tagsOf(Vocabulary vocabulary)
{
    static const Tags math = {{"r", Tag::MathRun}, {"t", Tag::MathText}};
    static const Tags chart = {{"chartSpace", Tag::ChartSpace}};
    static const Tags relationships = {{"Relationship", Tag::PackageRelationship}};
    static const Tags compatibility = {{"Fallback", Tag::CompatibilityFallback}};
    switch (vocabulary) {
    case Vocabulary::Word:
        return wordTags();
    case Vocabulary::Drawing:
        return drawingTags();
    case Vocabulary::Sheet:
        return sheetTags();
    case Vocabulary::Presentation:
        return presentationTags();
    case Vocabulary::Chart:
        return chart;
    case Vocabulary::Math:
        return math;
    case Vocabulary::PackageRelationships:
        return relationships;
    case Vocabulary::Compatibility:
        return compatibility;
    case Vocabulary::None:
    case Vocabulary::Other:
        break;
    }
    return noTags();
}

} // namespace

Vocabulary vocabularyOf(std::string_view namespaceUri)
{
    static const std::unordered_map<std::string_view, Vocabulary> vocabularies = {
        {"http://schemas.openxmlformats.org/wordprocessingml/2006/main", Vocabulary::Word},
        {"http://purl.oclc.org/ooxml/wordprocessingml/main", Vocabulary::Word},
        {"http://schemas.openxmlformats.org/drawingml/2006/main", Vocabulary::Drawing},
        {"http://purl.oclc.org/ooxml/drawingml/main", Vocabulary::Drawing},
        {"http://schemas.openxmlformats.org/spreadsheetml/2006/main", Vocabulary::Sheet},
        {"http://purl.oclc.org/ooxml/spreadsheetml/main", Vocabulary::Sheet},
        {"http://schemas.openxmlformats.org/presentationml/2006/main", Vocabulary::Presentation},
        {"http://purl.oclc.org/ooxml/presentationml/main", Vocabulary::Presentation},
        {"http://schemas.openxmlformats.org/drawingml/2006/chart", Vocabulary::Chart},
        {"http://purl.oclc.org/ooxml/drawingml/chart", Vocabulary::Chart},
        {"http://schemas.openxmlformats.org/officeDocument/2006/math", Vocabulary::Math},
        {"http://purl.oclc.org/ooxml/officeDocument/math", Vocabulary::Math},
        {"http://schemas.openxmlformats.org/package/2006/relationships",
         Vocabulary::PackageRelationships},
        {"http://schemas.openxmlformats.org/markup-compatibility/2006", Vocabulary::Compatibility},
    };
    const auto found = vocabularies.find(namespaceUri);
    return found == vocabularies.end() ? Vocabulary::Other : found->second;
}

Tag tagOf(Vocabulary vocabulary, std::string_view localName)
{
    const Tags &tags = tagsOf(vocabulary);
    const auto found = tags.find(localName);
    return found == tags.end() ? Tag::Unknown : found->second;
}

} // namespace standin
