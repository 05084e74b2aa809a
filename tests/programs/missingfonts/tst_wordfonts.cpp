#include <QRandomGenerator>
#include <QTemporaryDir>

#include "tests/programs/missingfonts/documentfamilies.h"
#include "tests/programs/missingfonts/packagebuilder.h"
#include "tests/support/shell/headlesstest.h"

/// The fonts of text documents that are packages.
class WordFontsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_package = testsupport::PackageBuilder();
        m_package.relate({}, QStringLiteral("officeDocument"), QStringLiteral("word/document.xml"));
    }

    void theCharactersOfARunChooseAmongItsFonts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("families");
        const QString latin = QStringLiteral("Latin");
        const QString high = QStringLiteral("High");
        const QString asian = QStringLiteral("Asian");
        const QString complex = QStringLiteral("Complex");
        QTest::newRow("ASCII") << QStringLiteral("text") << QStringList{latin};
        QTest::newRow("accents") << QStringLiteral("é") << QStringList{high};
        QTest::newRow("Chinese") << QStringLiteral("文") << QStringList{asian};
        QTest::newRow("Korean") << QStringLiteral("한") << QStringList{asian};
        QTest::newRow("full-width forms") << QStringLiteral("，") << QStringList{asian};
        QTest::newRow("Arabic") << QStringLiteral("ع") << QStringList{complex};
        QTest::newRow("Thai") << QStringLiteral("ก") << QStringList{complex};
        QTest::newRow("beyond 16 bits") << QStringLiteral("𠀀") << QStringList{asian};
        QTest::newRow("mixed") << QStringLiteral("a 文 é") << QStringList{asian, high, latin};
        QTest::newRow("numbered entity") << QStringLiteral("&#x6587;") << QStringList{asian};
        QTest::newRow("character data")
            << QStringLiteral("<![CDATA[文&]]>") << QStringList{asian, latin};
        QTest::newRow("no text") << QString() << QStringList{};
    }

    void theCharactersOfARunChooseAmongItsFonts()
    {
        QFETCH(QString, text);
        QTEST(familiesOf(run(allFonts, text.toUtf8())), "families");
    }

    void theHintMovesSharedCharactersToTheEastAsianFont()
    {
        const QByteArray fonts = "<w:rFonts w:hint=\"eastAsia\" w:hAnsi=\"High\""
                                 " w:eastAsia=\"Asian\"/>";
        QCOMPARE(familiesOf(run(fonts, "“")), QStringList{QStringLiteral("Asian")});
    }

    void complexRunsUseTheComplexFontForAll()
    {
        QCOMPARE(familiesOf(run(allFonts + "<w:rtl/>", "abc 文")),
                 QStringList{QStringLiteral("Complex")});
        init();
        QCOMPARE(familiesOf(run(allFonts + "<w:cs w:val=\"0\"/>", "abc")),
                 QStringList{QStringLiteral("Latin")});
    }

    void fontsWithoutTextDoNotCount()
    {
        const QByteArray body = "<w:p><w:pPr><w:rPr>" + allFonts + "</w:rPr></w:pPr><w:r><w:rPr>" +
                                allFonts + "</w:rPr><w:instrText>PAGE</w:instrText></w:r></w:p>";
        QCOMPARE(familiesOf(body), QStringList());
    }

    void stylesPassOnWhatTheyInherit()
    {
        addStyles("<w:docDefaults><w:rPrDefault><w:rPr><w:rFonts w:ascii=\"Base\""
                  " w:eastAsia=\"BaseAsian\"/></w:rPr></w:rPrDefault></w:docDefaults>"
                  "<w:style w:type=\"paragraph\" w:default=\"1\" w:styleId=\"N\"/>"
                  "<w:style w:type=\"paragraph\" w:styleId=\"Child\"><w:basedOn w:val=\"Parent\"/>"
                  "</w:style>"
                  "<w:style w:type=\"paragraph\" w:styleId=\"Parent\"><w:rPr><w:rFonts"
                  " w:ascii=\"ParentFont\"/></w:rPr></w:style>"
                  "<w:style w:type=\"character\" w:styleId=\"Mark\"><w:rPr><w:rFonts"
                  " w:eastAsia=\"MarkAsian\"/></w:rPr></w:style>");
        const QByteArray body =
            "<w:p><w:pPr><w:pStyle w:val=\"Child\"/></w:pPr><w:r><w:rPr><w:rStyle"
            " w:val=\"Mark\"/></w:rPr><w:t>a文</w:t></w:r><w:r><w:t>文</w:t></w:r></w:p>";
        QCOMPARE(familiesOf(body),
                 (QStringList{QStringLiteral("BaseAsian"), QStringLiteral("MarkAsian"),
                              QStringLiteral("ParentFont")}));
    }

    void stylesBasedOnThemselvesEnd()
    {
        addStyles(
            "<w:style w:type=\"paragraph\" w:styleId=\"A\"><w:basedOn w:val=\"B\"/><w:rPr>"
            "<w:rFonts w:ascii=\"OfA\"/></w:rPr></w:style>"
            "<w:style w:type=\"paragraph\" w:styleId=\"B\"><w:basedOn w:val=\"A\"/></w:style>");
        QCOMPARE(
            familiesOf("<w:p><w:pPr><w:pStyle w:val=\"A\"/></w:pPr><w:r><w:t>x</w:t></w:r></w:p>"),
            QStringList{QStringLiteral("OfA")});
    }

    void theTextOfATableTakesTheTableStyle()
    {
        addStyles("<w:style w:type=\"table\" w:styleId=\"T\"><w:rPr><w:rFonts w:ascii=\"OfTable\"/>"
                  "</w:rPr></w:style>");
        const QByteArray paragraph = "<w:p><w:r><w:t>x</w:t></w:r></w:p>";
        QCOMPARE(familiesOf("<w:tbl><w:tblPr><w:tblStyle w:val=\"T\"/></w:tblPr><w:tr><w:tc>" +
                            paragraph + "</w:tc></w:tr></w:tbl>" + paragraph),
                 QStringList{QStringLiteral("OfTable")});
    }

    void themeFontsAreResolved()
    {
        addTheme();
        m_package.relate(document, QStringLiteral("settings"), QStringLiteral("settings.xml"));
        m_package.addXml(QStringLiteral("word/settings.xml"),
                         "<w:settings><w:themeFontLang w:eastAsia=\"zh-CN\"/></w:settings>");
        const QByteArray fonts = "<w:rFonts w:ascii=\"Overruled\" w:asciiTheme=\"majorHAnsi\""
                                 " w:eastAsiaTheme=\"minorEastAsia\" w:cstheme=\"minorBidi\"/>";
        QCOMPARE(familiesOf(run(fonts, "a文")),
                 (QStringList{QStringLiteral("Heading"), QStringLiteral("汉")}));
    }

    void fontsThatTheDocumentCarriesAreLeftOut()
    {
        m_package.relate(document, QStringLiteral("fontTable"), QStringLiteral("fontTable.xml"));
        m_package.addXml(
            QStringLiteral("word/fontTable.xml"),
            "<w:fonts><w:font w:name=\"Latin\"><w:embedRegular r:id=\"x\"/></w:font>"
            "<w:font w:name=\"Asian\"><w:altName w:val=\"Other\"/></w:font></w:fonts>");
        const QString path = write(run(allFonts, "a文"));
        const std::vector<programs::UsedFamily> families = programs::documentFonts(path);
        QCOMPARE(families.size(), std::size_t(1));
        QCOMPARE(families.front().name, QStringLiteral("Asian"));
        QCOMPARE(families.front().alternative, QStringLiteral("Other"));
    }

    void headersNotesAndCommentsCount()
    {
        const QStringList types = {QStringLiteral("header"), QStringLiteral("footer"),
                                   QStringLiteral("footnotes"), QStringLiteral("endnotes"),
                                   QStringLiteral("comments")};
        for (const QString &type : types) {
            m_package.relate(document, type, type + QStringLiteral(".xml"));
            m_package.addXml(QStringLiteral("word/%1.xml").arg(type),
                             "<w:part>" +
                                 run("<w:rFonts w:ascii=\"" + type.toUtf8() + "\"/>", "x") +
                                 "</w:part>");
        }
        m_package.addXml(QStringLiteral("word/unrelated.xml"),
                         "<w:hdr>" + run("<w:rFonts w:ascii=\"Unrelated\"/>", "x") + "</w:hdr>");
        QStringList expected = types;
        expected.sort();
        QCOMPARE(familiesOf({}), expected);
    }

    void textBoxesStandApartFromTheRunAroundThem()
    {
        const QByteArray box = "<mc:AlternateContent><mc:Choice Requires=\"wps\"><w:txbxContent>" +
                               run("<w:rFonts w:ascii=\"Inner\"/>", "x") +
                               "</w:txbxContent></mc:Choice><mc:Fallback><w:txbxContent>" +
                               run("<w:rFonts w:ascii=\"Fallback\"/>", "x") +
                               "</w:txbxContent></mc:Fallback></mc:AlternateContent>";
        QCOMPARE(familiesOf("<w:p><w:r><w:rPr><w:rFonts w:ascii=\"Outer\"/></w:rPr>" + box +
                            "<w:t>x</w:t></w:r></w:p>"),
                 (QStringList{QStringLiteral("Inner"), QStringLiteral("Outer")}));
    }

    void symbolsAndListLabelsCount()
    {
        m_package.relate(document, QStringLiteral("numbering"), QStringLiteral("numbering.xml"));
        m_package.addXml(
            QStringLiteral("word/numbering.xml"),
            "<w:numbering><w:abstractNum w:abstractNumId=\"4\"><w:lvl w:ilvl=\"0\"><w:numFmt"
            " w:val=\"bullet\"/><w:lvlText w:val=\"\xEF\x82\xB7\"/><w:rPr><w:rFonts"
            " w:hAnsi=\"Bullets\"/></w:rPr></w:lvl><w:lvl w:ilvl=\"1\"><w:numFmt"
            " w:val=\"chineseCounting\"/><w:lvlText w:val=\"%2\"/><w:rPr><w:rFonts"
            " w:ascii=\"Digits\" w:eastAsia=\"Counting\"/></w:rPr></w:lvl></w:abstractNum>"
            "<w:num w:numId=\"7\"><w:abstractNumId w:val=\"4\"/></w:num></w:numbering>");
        const auto listed = [](const QByteArray &level) {
            return "<w:p><w:pPr><w:numPr><w:ilvl w:val=\"" + level +
                   "\"/><w:numId w:val=\"7\"/></w:numPr></w:pPr></w:p>";
        };
        const QByteArray symbol = "<w:p><w:r><w:sym w:font=\"Signs\" w:char=\"F0FC\"/></w:r></w:p>";
        QCOMPARE(familiesOf(listed("0") + symbol),
                 (QStringList{QStringLiteral("Bullets"), QStringLiteral("Signs")}));
        QCOMPARE(familiesOf(listed("1")).contains(QStringLiteral("Counting")), true);
    }

    void formerPropertiesDoNotCount()
    {
        QCOMPARE(familiesOf(run("<w:rFonts w:ascii=\"Now\"/><w:rPrChange><w:rPr><w:rFonts"
                                " w:ascii=\"Before\"/></w:rPr></w:rPrChange>",
                                "x")),
                 QStringList{QStringLiteral("Now")});
    }

    void theStrictFormAndOtherPrefixesAreRead()
    {
        m_package.add(document,
                      "<x:document xmlns:x=\"http://purl.oclc.org/ooxml/wordprocessingml/main\">"
                      "<x:body><x:p><x:r><x:rPr><x:rFonts x:ascii=\"Strict\"/></x:rPr>"
                      "<x:t>x</x:t></x:r></x:p></x:body></x:document>");
        const QString path = m_directory.filePath(QStringLiteral("strict.docx"));
        m_package.write(path);
        QCOMPARE(testsupport::documentFamilies(path), QStringList{QStringLiteral("Strict")});
    }

    void namesOfPartsMayBePercentEncoded()
    {
        m_package.relate(document, QStringLiteral("header"), QStringLiteral("my%20header.xml"));
        m_package.addXml(QStringLiteral("word/my%20header.xml"),
                         "<w:hdr>" + run("<w:rFonts w:ascii=\"Encoded\"/>", "x") + "</w:hdr>");
        m_package.relate(document, QStringLiteral("footer"), QStringLiteral("my%20footer.xml"));
        m_package.addXml(QStringLiteral("word/my footer.xml"),
                         "<w:ftr>" + run("<w:rFonts w:ascii=\"Plain\"/>", "x") + "</w:ftr>");
        QCOMPARE(familiesOf({}), (QStringList{QStringLiteral("Encoded"), QStringLiteral("Plain")}));
    }

    void theBodyIsFoundWhereverItStandsInTheFile()
    {
        // The file is read in blocks of 64 KB, and one may end right behind the body's beginning.
        QByteArray filler(65536, Qt::Uninitialized);
        QRandomGenerator random(1);
        random.fillRange(reinterpret_cast<quint32 *>(filler.data()), filler.size() / 4);
        const testsupport::PackageBuilder empty = m_package;
        for (int size = filler.size() - 800; size < filler.size(); size += 13) {
            m_package = empty;
            m_package.add(QStringLiteral("filler.bin"), filler.left(size));
            QCOMPARE(familiesOf(run(allFonts, "x")), QStringList{QStringLiteral("Latin")});
        }
    }

private:
    const QString document = QStringLiteral("word/document.xml");
    const QByteArray allFonts = "<w:rFonts w:ascii=\"Latin\" w:hAnsi=\"High\" w:eastAsia=\"Asian\""
                                " w:cs=\"Complex\"/>";

    static QByteArray run(const QByteArray &properties, const QByteArray &text)
    {
        return "<w:p><w:r><w:rPr>" + properties + "</w:rPr><w:t>" + text + "</w:t></w:r></w:p>";
    }

    void addStyles(const QByteArray &content)
    {
        m_package.relate(document, QStringLiteral("styles"), QStringLiteral("styles.xml"));
        m_package.addXml(QStringLiteral("word/styles.xml"), "<w:styles>" + content + "</w:styles>");
    }

    void addTheme()
    {
        m_package.relate(document, QStringLiteral("theme"), QStringLiteral("/word/theme/t.xml"));
        m_package.addXml(QStringLiteral("word/theme/t.xml"),
                         "<a:theme><a:fontScheme><a:majorFont><a:latin typeface=\"Heading\"/>"
                         "</a:majorFont><a:minorFont><a:latin typeface=\"Body\"/><a:ea"
                         " typeface=\"\"/><a:font script=\"Hans\" typeface=\"汉\"/></a:minorFont>"
                         "</a:fontScheme></a:theme>");
    }

    QString write(const QByteArray &body)
    {
        testsupport::PackageBuilder package = m_package;
        package.addXml(document, "<w:document><w:body>" + body + "</w:body></w:document>");
        const QString path = m_directory.filePath(QStringLiteral("document.docx"));
        package.write(path);
        return path;
    }

    QStringList familiesOf(const QByteArray &body)
    {
        return testsupport::documentFamilies(write(body));
    }

    QTemporaryDir m_directory;
    testsupport::PackageBuilder m_package;
};

HEADLESS_TEST_MAIN(WordFontsTest)
#include "tst_wordfonts.moc"
