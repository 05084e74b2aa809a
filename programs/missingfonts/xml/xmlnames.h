#pragma once

#include <cstdint>
#include <string_view>

namespace standin {

/// The XML vocabularies that the readers know, in their transitional and their strict form.
enum class Vocabulary : std::uint8_t {
    None, ///< an attribute without a prefix
    Other,
    Word,
    Drawing,
    Sheet,
    Presentation,
    Chart,
    Math,
    PackageRelationships,
    Compatibility
};

/// The elements that the readers know. The first part of a name is the vocabulary's.
enum class Tag : std::uint8_t {
    Unknown,
    CompatibilityFallback,
    PackageRelationship,

    WordDocument,
    WordAbstractNumbering,
    WordAbstractNumberingReference,
    WordAlternativeName,
    WordAnnotationReference,
    WordBasedOn,
    WordComplex,
    WordDeletedText,
    WordDocumentDefaults,
    WordEmbedBold,
    WordEmbedBoldItalic,
    WordEmbedItalic,
    WordEmbedRegular,
    WordEndnoteReference,
    WordFont,
    WordFootnoteReference,
    WordLevel,
    WordLevelIndex,
    WordLevelText,
    WordNumber,
    WordNumberFormat,
    WordNumberingId,
    WordPageNumber,
    WordParagraph,
    WordParagraphProperties,
    WordParagraphPropertiesChange,
    WordParagraphStyle,
    WordRightToLeft,
    WordRun,
    WordRunFonts,
    WordRunPropertiesChange,
    WordRunStyle,
    WordStyle,
    WordSymbol,
    WordTable,
    WordTableStyle,
    WordTableStylePart,
    WordText,
    WordThemeFontLanguage,

    MathRun,
    MathText,

    DrawingBulletAutomatic,
    DrawingBulletCharacter,
    DrawingBulletFont,
    DrawingBulletFontOfText,
    DrawingBulletNone,
    DrawingBulletPicture,
    DrawingComplex,
    DrawingDefaultRun,
    DrawingEastAsian,
    DrawingField,
    DrawingFont,
    DrawingFontReference,
    DrawingFontScheme,
    DrawingLatin,
    DrawingLevel1,
    DrawingLevel2,
    DrawingLevel3,
    DrawingLevel4,
    DrawingLevel5,
    DrawingLevel6,
    DrawingLevel7,
    DrawingLevel8,
    DrawingLevel9,
    DrawingListStyle,
    DrawingMajorFont,
    DrawingMinorFont,
    DrawingParagraph,
    DrawingParagraphProperties,
    DrawingRun,
    DrawingRunProperties,
    DrawingSymbol,
    DrawingText,

    SheetCell,
    SheetCellFormats,
    SheetCommentText,
    SheetEvenFooter,
    SheetEvenHeader,
    SheetFirstFooter,
    SheetFirstHeader,
    SheetFont,
    SheetFontTable,
    SheetFontName,
    SheetFormat,
    SheetInlineString,
    SheetOddFooter,
    SheetOddHeader,
    SheetPhonetic,
    SheetRichFontName,
    SheetRichRun,
    SheetScheme,
    SheetStringItem,
    SheetText,
    SheetValue,
    SheetWorkbook,

    PresentationDocument,
    PresentationBodyStyle,
    PresentationDefaultStyle,
    PresentationEmbeddedFont,
    PresentationFont,
    PresentationGraphicFrame,
    PresentationOtherStyle,
    PresentationPlaceholder,
    PresentationShape,
    PresentationTitleStyle,

    ChartSpace
};

Vocabulary vocabularyOf(std::string_view namespaceUri);

/// Tag::Unknown for an element that no reader asks for.
Tag tagOf(Vocabulary vocabulary, std::string_view localName);

} // namespace standin
