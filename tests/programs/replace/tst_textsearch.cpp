#include <QTest>

#include "programs/replace/text/search.h"

using programs::Markup;
using programs::Search;
using programs::SearchedPart;

namespace {

SearchedPart searched(Markup markup, const QByteArray &xml, const char *find,
                      const char *replacement)
{
    return programs::searchedPart(xml, markup,
                                  {QString::fromUtf8(find), QString::fromUtf8(replacement), false});
}

QByteArray paragraph(const char *inner)
{
    return QByteArray("<text:p>") + inner + "</text:p>";
}

} // namespace

class TestTextSearch : public QObject
{
    Q_OBJECT

private slots:
    void findsTextOverBordersOfFormatting_data();
    void findsTextOverBordersOfFormatting();
    void replacesNothingElse();
    void keepsSpacesInTheWordElementsThatItChanges();
    void doesNotFindWhatNoReaderSees_data();
    void doesNotFindWhatNoReaderSees();
    void showsWhatIsAround();
    void ignoresCaseWhenAsked();
    void refusesWhatNoDocumentCanHave();
    void refusesDamagedXml_data();
    void refusesDamagedXml();
};

void TestTextSearch::findsTextOverBordersOfFormatting_data()
{
    QTest::addColumn<bool>("isOpenDocument");
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("spans") << true
                           << paragraph("ab<text:span>c<text:span>d</text:span></text:span>e")
                           << paragraph("aX<text:span><text:span></text:span></text:span>e");
    QTest::newRow("a comment's anchor within")
        << true << paragraph("b<office:annotation><text:p>bcd</text:p></office:annotation>cd")
        << paragraph("X<office:annotation><text:p>X</text:p></office:annotation>");
    QTest::newRow("runs")
        << false
        << QByteArray("<w:p><w:r><w:t xml:space=\"preserve\">a b</w:t></w:r><w:r><w:rPr/>"
                      "<w:t xml:space=\"preserve\">c</w:t></w:r><w:r>"
                      "<w:t xml:space=\"preserve\">d e</w:t></w:r></w:p>")
        << QByteArray("<w:p><w:r><w:t xml:space=\"preserve\">a X</w:t></w:r><w:r><w:rPr/>"
                      "<w:t xml:space=\"preserve\"></w:t></w:r><w:r>"
                      "<w:t xml:space=\"preserve\"> e</w:t></w:r></w:p>");
    QTest::newRow("runs of a slide")
        << false << QByteArray("<a:p><a:r><a:t>bc</a:t></a:r><a:r><a:t>d</a:t></a:r></a:p>")
        << QByteArray("<a:p><a:r><a:t>X</a:t></a:r><a:r><a:t></a:t></a:r></a:p>");
    QTest::newRow("a rich cell") << false
                                 << QByteArray("<si><r><t xml:space=\"preserve\">b</t></r>"
                                               "<r><t xml:space=\"preserve\">cd</t></r></si>")
                                 << QByteArray("<si><r><t xml:space=\"preserve\">X</t></r>"
                                               "<r><t xml:space=\"preserve\"></t></r></si>");
}

void TestTextSearch::findsTextOverBordersOfFormatting()
{
    QFETCH(bool, isOpenDocument);
    QFETCH(QByteArray, xml);
    QFETCH(QByteArray, expected);
    const SearchedPart part =
        searched(isOpenDocument ? Markup::OpenDocument : Markup::OfficeOpenXml, xml, "bcd", "X");
    QCOMPARE(part.problem, QString());
    QCOMPARE(part.content, expected);
    QVERIFY(!part.hits.isEmpty());
}

void TestTextSearch::replacesNothingElse()
{
    const QByteArray before = "<?xml version=\"1.0\"?>\n<!-- one & two -->\n<a b='>'><text:p\n"
                              "x=\"one\">&lt;one&gt; &#233;one \xf0\x9f\x98\x80</text:p></a>\n";
    const SearchedPart part = searched(Markup::OpenDocument, before, "one", "\"two\" & <b>");
    QByteArray expected = before;
    expected.replace("one&gt;", "&quot;two&quot; &amp; &lt;b&gt;&gt;");
    expected.replace(";one ", ";&quot;two&quot; &amp; &lt;b&gt; ");
    QCOMPARE(part.content, expected);
    QCOMPARE(part.hits.size(), 2);
    // Spaces in a row would be read as one.
    QCOMPARE(searched(Markup::OpenDocument, "<text:p>one  two\n three</text:p>", "one two three",
                      " a  b ")
                 .content,
             QByteArray("<text:p><text:s/>a <text:s/>b<text:s/></text:p>"));
}

void TestTextSearch::keepsSpacesInTheWordElementsThatItChanges()
{
    const SearchedPart part =
        searched(Markup::OfficeOpenXml, "<w:p><w:t>one</w:t><w:t>two</w:t></w:p>", "one", "1 ");
    QCOMPARE(part.content,
             QByteArray("<w:p><w:t xml:space=\"preserve\">1 </w:t><w:t>two</w:t></w:p>"));
}

void TestTextSearch::doesNotFindWhatNoReaderSees_data()
{
    QTest::addColumn<bool>("isOpenDocument");
    QTest::addColumn<QByteArray>("xml");

    QTest::newRow("two paragraphs") << true << paragraph("b") + paragraph("cd");
    QTest::newRow("a tab between") << true << paragraph("b<text:tab/>cd");
    QTest::newRow("an attribute") << true << QByteArray("<text:p a=\"bcd\"/>");
    QTest::newRow("a comment of the XML") << true << paragraph("b<!--bcd-->");
    QTest::newRow("deleted text") << true
                                  << "<text:tracked-changes>" + paragraph("bcd") +
                                         "</text:tracked-changes>";
    QTest::newRow("deleted runs") << false << QByteArray("<w:p><w:delText>bcd</w:delText></w:p>");
    QTest::newRow("a field's code")
        << false << QByteArray("<w:p><w:instrText>bcd</w:instrText></w:p>");
    QTest::newRow("a cell's pronunciation")
        << false << QByteArray("<si><rPh><t>bcd</t></rPh></si>");
    QTest::newRow("a number of a cell") << false << QByteArray("<c><v>bcd</v></c>");
}

void TestTextSearch::doesNotFindWhatNoReaderSees()
{
    QFETCH(bool, isOpenDocument);
    QFETCH(QByteArray, xml);
    const SearchedPart part =
        searched(isOpenDocument ? Markup::OpenDocument : Markup::OfficeOpenXml, xml, "bcd", "X");
    QCOMPARE(part.problem, QString());
    QVERIFY(part.hits.isEmpty());
    QCOMPARE(part.content, xml);
}

void TestTextSearch::showsWhatIsAround()
{
    const SearchedPart part = searched(
        Markup::OpenDocument,
        "<text:p>Dear <text:span>Mr</text:span> Smith,<text:tab/>hello</text:p>", "Mr Smith", "");
    QCOMPARE(part.hits.size(), 1);
    QCOMPARE(part.hits.first().before, QStringLiteral("Dear "));
    QCOMPARE(part.hits.first().found, QStringLiteral("Mr Smith"));
    QCOMPARE(part.hits.first().after, QStringLiteral(", hello"));
}

void TestTextSearch::ignoresCaseWhenAsked()
{
    const QByteArray xml = paragraph("One one ONE");
    QCOMPARE(searched(Markup::OpenDocument, xml, "one", "").hits.size(), 1);
    const Search search{QStringLiteral("one"), QStringLiteral("2"), true};
    QCOMPARE(programs::searchedPart(xml, Markup::OpenDocument, search).content, paragraph("2 2 2"));
}

void TestTextSearch::refusesWhatNoDocumentCanHave()
{
    const QByteArray xml = paragraph("one<text:tab/>two");
    for (const char *words : {"", "a\nb", "\x01", "\xef\xbf\xbc"})
        QVERIFY(!searched(Markup::OpenDocument, xml, words, "three").problem.isEmpty());
    QVERIFY(!searched(Markup::OpenDocument, xml, "one", "a\nb").problem.isEmpty());
}

void TestTextSearch::refusesDamagedXml_data()
{
    QTest::addColumn<QByteArray>("xml");

    QTest::newRow("cut off") << QByteArray("<text:p>one");
    QTest::newRow("crossed") << QByteArray("<a><b></a></b>");
    QTest::newRow("a tag without an end") << QByteArray("<a><text:p one");
    QTest::newRow("an unknown entity") << paragraph("one &two;");
    QTest::newRow("no UTF-8") << paragraph("one \xff");
    QTest::newRow("entities of its own")
        << QByteArray("<!DOCTYPE a [<!ENTITY b \"one\">]><a>one</a>");
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe<\0a\0/\0>\0", 10);
    QTest::newRow("too deep") << QByteArray("<a>").repeated(2000) +
                                     QByteArray("</a>").repeated(2000);
}

void TestTextSearch::refusesDamagedXml()
{
    QFETCH(QByteArray, xml);
    const SearchedPart part = searched(Markup::OpenDocument, xml, "one", "two");
    QVERIFY(!part.problem.isEmpty());
    QVERIFY(part.hits.isEmpty());
}

QTEST_GUILESS_MAIN(TestTextSearch)
#include "tst_textsearch.moc"
