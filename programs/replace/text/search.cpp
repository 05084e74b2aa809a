#include "programs/replace/text/search.h"

#include <QMap>
#include <QSet>

#include <algorithm>

#include "programs/replace/text/paragraph.h"
#include "programs/replace/text/xmltokens.h"
#include "texts/texts.h"

namespace programs {

namespace {

constexpr int deepest = 1000;
constexpr int context = 30;
constexpr char keepsSpaces[] = " xml:space=\"preserve\"";

/// What the elements of a kind of document mean for its text. Their prefixes are those that all
/// programs write.
struct Vocabulary
{
    QSet<QByteArray> paragraphs;
    /// Their text belongs to the paragraph.
    QSet<QByteArray> texts;
    /// Elements of these names are as if they were not there, but for paragraphs in them.
    QSet<QByteArray> ignored;
    /// They stand for something that is not text; the names of all others, if empty.
    QSet<QByteArray> separators;
    /// Nothing in them is searched.
    QSet<QByteArray> skipped;
    bool collapsesSpaces = false;
};

const Vocabulary &vocabularyOf(Markup markup)
{
    static const Vocabulary openDocument = {
        {"text:p", "text:h"},
        {"text:p", "text:h", "text:span", "text:a", "text:meta", "text:ruby", "text:ruby-base"},
        {"office:annotation", "office:annotation-end", "text:bookmark", "text:bookmark-start",
         "text:bookmark-end", "text:reference-mark-start", "text:reference-mark-end", "text:change",
         "text:change-start", "text:change-end", "text:soft-page-break"},
        {},
        {"text:tracked-changes", "office:binary-data"},
        true};
    static const Vocabulary officeOpenXml = {
        {"w:p", "a:p", "si", "is", "x:si", "x:is"},
        {"w:t", "a:t", "t", "x:t"},
        {},
        {"w:tab", "w:br", "w:cr", "a:br", "w:drawing", "w:pict", "w:object", "w:fldChar", "w:sym",
         "w:noBreakHyphen", "w:softHyphen", "w:footnoteReference", "w:endnoteReference"},
        {"rPh", "x:rPh", "a:fld"},
        false};
    return markup == Markup::OpenDocument ? openDocument : officeOpenXml;
}

/// The bytes of a part that are replaced, by where they begin.
struct Edit
{
    int end = 0;
    QByteArray text;
};

class PartSearch
{
public:
    PartSearch(const QByteArray &xml, Markup markup, const Search &search)
        : m_xml(xml), m_markup(markup), m_words(vocabularyOf(markup)), m_search(search)
    {
    }

    SearchedPart result();

private:
    struct Element
    {
        QByteArray name;
        int nameEnd = 0;
        bool isParagraph = false;
        bool hasText = false;
        bool isSkipped = false;
    };

    bool take(const XmlToken &token);
    void begin(const XmlToken &token);
    bool end(const QByteArray &name);
    bool addText(const XmlToken &token);
    void searchParagraph(const Paragraph &paragraph);
    void replace(const Paragraph &paragraph, int begin, int end);
    QByteArray replacement() const;
    QByteArray edited() const;

    const QByteArray &m_xml;
    const Markup m_markup;
    const Vocabulary &m_words;
    const Search &m_search;
    QVector<Element> m_elements;
    QVector<Paragraph> m_paragraphs;
    QVector<Hit> m_hits;
    QMap<int, Edit> m_edits;
};

SearchedPart PartSearch::result()
{
    const QString damage = texts::tr("it is damaged: a part of it is not well-formed XML");
    if (m_xml.startsWith("\xff\xfe") || m_xml.startsWith("\xfe\xff"))
        return {{}, m_xml, texts::tr("its text is in an unusual encoding")};
    XmlToken token;
    while ((token = tokenAt(m_xml, token.end)).kind != XmlToken::Kind::Nothing) {
        if (!take(token))
            return {{}, m_xml, damage};
    }
    if (!m_elements.isEmpty())
        return {{}, m_xml, damage};
    return {m_hits, edited(), {}};
}

bool PartSearch::take(const XmlToken &token)
{
    switch (token.kind) {
    case XmlToken::Kind::Text:
        return addText(token);
    case XmlToken::Kind::Start:
        begin(token);
        return m_elements.size() <= deepest;
    case XmlToken::Kind::Empty:
        begin(token);
        return end(token.name);
    case XmlToken::Kind::End:
        return end(token.name);
    case XmlToken::Kind::Other:
        return true;
    case XmlToken::Kind::Damaged:
    case XmlToken::Kind::Nothing:
        break;
    }
    return false;
}

void PartSearch::begin(const XmlToken &token)
{
    const bool isInside = !m_elements.isEmpty() && m_elements.last().isSkipped;
    Element element{token.name, token.begin + 1 + int(token.name.size())};
    element.isSkipped = isInside || m_words.skipped.contains(token.name);
    element.isParagraph = !element.isSkipped && m_words.paragraphs.contains(token.name);
    element.hasText = !element.isSkipped && m_words.texts.contains(token.name);
    const bool isOther = m_words.separators.isEmpty()
                             ? !element.hasText && !m_words.ignored.contains(token.name)
                             : element.isSkipped || m_words.separators.contains(token.name);
    if (isOther && !m_paragraphs.isEmpty())
        m_paragraphs.last().addSeparator(token.begin);
    if (element.isParagraph)
        m_paragraphs.append(Paragraph());
    m_elements.append(element);
}

bool PartSearch::end(const QByteArray &name)
{
    if (m_elements.isEmpty() || m_elements.last().name != name)
        return false;
    if (m_elements.takeLast().isParagraph)
        searchParagraph(m_paragraphs.takeLast());
    return true;
}

bool PartSearch::addText(const XmlToken &token)
{
    if (m_elements.isEmpty() || !m_elements.last().hasText || m_paragraphs.isEmpty())
        return true;
    return m_paragraphs.last().add(m_xml, token.begin, token.end, m_elements.last().nameEnd,
                                   m_words.collapsesSpaces);
}

void PartSearch::searchParagraph(const Paragraph &paragraph)
{
    const Qt::CaseSensitivity cases =
        m_search.ignoresCase ? Qt::CaseInsensitive : Qt::CaseSensitive;
    const auto shown = [&paragraph](int begin, int end) {
        return paragraph.text.mid(begin, end - begin).replace(separator, QLatin1Char(' '));
    };
    const int size = m_search.find.size();
    int at = 0;
    while ((at = paragraph.text.indexOf(m_search.find, at, cases)) >= 0) {
        m_hits.append({shown(qMax(0, at - context), at), shown(at, at + size),
                       shown(at + size, at + size + context)});
        replace(paragraph, at, at + size);
        at += size;
    }
}

void PartSearch::replace(const Paragraph &paragraph, int begin, int end)
{
    for (int n = begin; n < end; ++n) {
        const Paragraph::Place &place = paragraph.places[n];
        const bool isFirst = n == begin;
        if (isFirst || place.end > place.begin)
            m_edits.insert(place.begin, {place.end, isFirst ? replacement() : QByteArray()});
        const int tagEnd = m_xml.indexOf('>', place.element);
        const QByteArray attributes = m_xml.mid(place.element, tagEnd - place.element);
        if (m_markup == Markup::OfficeOpenXml && !attributes.contains("xml:space") &&
            m_xml.mid(place.element - 3, 3) != "a:t")
            m_edits.insert(place.element, {place.element, keepsSpaces});
    }
}

/// OpenDocument reads spaces in a row as one, and none where a line begins.
QByteArray PartSearch::replacement() const
{
    QByteArray text = m_search.replacement.toHtmlEscaped().toUtf8();
    if (m_markup == Markup::OfficeOpenXml)
        return text;
    text.replace("  ", " <text:s/>");
    if (text.startsWith(' '))
        text.replace(0, 1, "<text:s/>");
    if (text.endsWith(' '))
        text.replace(text.size() - 1, 1, "<text:s/>");
    return text;
}

QByteArray PartSearch::edited() const
{
    QByteArray content;
    int at = 0;
    for (auto edit = m_edits.begin(); edit != m_edits.end(); ++edit) {
        content += m_xml.mid(at, edit.key() - at) + edit->text;
        at = edit->end;
    }
    return content + m_xml.mid(at);
}

} // namespace

SearchedPart searchedPart(const QByteArray &xml, Markup markup, const Search &search)
{
    const QString both = search.find + search.replacement;
    const bool isText = std::none_of(both.begin(), both.end(), [](QChar character) {
        return character.category() == QChar::Other_Control || character == separator;
    });
    if (!isText || search.find.isEmpty())
        return {
            {}, xml, texts::tr("the text to find or its replacement cannot stand in a document")};
    return PartSearch(xml, markup, search).result();
}

} // namespace programs
