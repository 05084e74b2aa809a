#include <QXmlStreamReader>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/xml/xmlelement.h"
#include "programs/missingfonts/xml/xmlscanner.h"
#include "tests/support/shell/headlesstest.h"

namespace {

/// Writes down what the scanner reports, in the form of journalOfQt().
class Journal : public programs::XmlHandler
{
public:
    bool startElement(const programs::XmlElement &element) override
    {
        flush();
        lines.append(
            QStringLiteral("start %1 [%2]")
                .arg(qulonglong(element.tag()))
                .arg(QString::fromStdString(element.attribute(programs::Vocabulary::Word, "val"))));
        return true;
    }

    void endElement(programs::Tag tag) override
    {
        flush();
        lines.append(QStringLiteral("end %1").arg(qulonglong(tag)));
    }

    void text(std::string_view text) override { m_text.append(text.data(), int(text.size())); }

    QStringList lines;

private:
    void flush()
    {
        if (!m_text.isEmpty())
            lines.append(QStringLiteral("text ") + QString::fromUtf8(m_text));
        m_text.clear();
    }

    QByteArray m_text;
};

qulonglong tagOf(const QXmlStreamReader &reader)
{
    return qulonglong(
        programs::tagOf(programs::vocabularyOf(reader.namespaceUri().toString().toStdString()),
                        reader.name().toString().toStdString()));
}

QStringList journalOfQt(const QByteArray &document)
{
    const QString word =
        QStringLiteral("http://schemas.openxmlformats.org/wordprocessingml/2006/main");
    QXmlStreamReader reader(document);
    QStringList lines;
    QString text;
    const auto flush = [&] {
        if (!text.isEmpty())
            lines.append(QStringLiteral("text ") + text);
        text.clear();
    };
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            flush();
            lines.append(
                QStringLiteral("start %1 [%2]")
                    .arg(tagOf(reader))
                    .arg(reader.attributes().value(word, QStringLiteral("val")).toString()));
            break;
        case QXmlStreamReader::EndElement:
            flush();
            lines.append(QStringLiteral("end %1").arg(tagOf(reader)));
            break;
        case QXmlStreamReader::Characters:
            text += reader.text();
            break;
        default:
            break;
        }
    }
    return reader.hasError() ? QStringList{QStringLiteral("error")} : lines;
}

QStringList journalOf(const QByteArray &document, int blockSize)
{
    Journal journal;
    try {
        programs::XmlScanner scanner(journal);
        for (int at = 0; at < document.size(); at += blockSize)
            scanner.feed(document.constData() + at,
                         std::size_t(qMin(blockSize, document.size() - at)));
        scanner.finish();
    } catch (const programs::DocumentError &) {
        return {QStringLiteral("error")};
    }
    return journal.lines;
}

QByteArray inDocument(const QByteArray &content)
{
    return "<w:document xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">" +
           content + "</w:document>";
}

} // namespace

/// The scanner of XML parts, which has to see what Qt's reader sees.
class FontXmlTest : public QObject
{
    Q_OBJECT

private slots:
    void theScannerSeesWhatQtsReaderSees_data()
    {
        QTest::addColumn<QByteArray>("document");
        const auto row = [](const char *name, const QByteArray &document) {
            QTest::newRow(name) << document;
        };
        row("one element", inDocument({}));
        row("empty elements", inDocument("<w:r/><w:r />"));
        row("attributes", inDocument("<w:r w:val='a\"b' other=\"x\" w:val2=\"no\"\n\tx='>'/>"));
        row("entities", inDocument("<w:r w:val=\"&lt;&#65;&#x6587;\">&amp;&quot;&apos;&gt;</w:r>"));
        row("UTF-8", inDocument("<w:r w:val=\"é文𠀀\">é文𠀀 and more of it, é文𠀀</w:r>"));
        row("character data", inDocument("a<![CDATA[<w:r>&amp;]]>b"));
        row("comments", inDocument("a<!-- <w:r> -- -->b").replace(" -- -->", " -->"));
        row("instructions", "<?xml version=\"1.0\"?>\n" + inDocument("<?x <y>?>a"));
        row("byte order mark", "\xEF\xBB\xBF" + inDocument("a"));
        row("blanks around", " \n" + inDocument("a") + "\n <!-- end -->\n");
        row("prefix bound again",
            inDocument("<w:r><w:r xmlns:w=\"urn:x\"><w:r/></w:r><w:r/></w:r>"));
        row("default namespace",
            "<document xmlns=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">"
            "<r val=\"no\"/></document>");
        row("two prefixes",
            "<a:p xmlns:a=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\""
            " xmlns:b=\"http://schemas.openxmlformats.org/drawingml/2006/main\"><b:p a:val=\"1\"/>"
            "</a:p>");
        row("blank before the end", inDocument("<w:r></w:r >"));
        row("nothing", {});
        row("only text", "text");
        row("text behind", inDocument({}) + "x");
        row("two roots", inDocument({}) + inDocument({}));
        row("not closed", "<a><b></b>");
        row("crossed", "<a><b></a></b>");
        row("half a tag", "<a><b");
        row("half an attribute", "<a b=\"");
        row("no quotes", "<a b=c/>");
        row("no blank between attributes", "<a b=\"1\"c=\"2\"/>");
        row("unknown entity", "<a>&x;</a>");
        row("malformed entity", "<a>&</a>");
        row("forbidden character", "<a>&#0;</a>");
        row("surrogate", "<a>&#xD800;</a>");
        row("tag in a value", "<a b=\"<\"/>");
        row("undeclared prefix", "<a:b/>");
        row("no name", "<a><></a>");
        row("comment without end", "<a><!-- </a>");
    }

    void theScannerSeesWhatQtsReaderSees()
    {
        QFETCH(QByteArray, document);
        const QStringList expected = journalOfQt(document);
        for (const int blockSize : {1, 2, 3, 7, 64, 100000})
            QCOMPARE(journalOf(document, blockSize), expected);
    }

    void whatDocumentsMustNotHaveIsRefused_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("entities of its own")
            << QByteArray("<!DOCTYPE a [<!ENTITY b \"c\"><!ENTITY d \"&b;&b;&b;\">]><a>&d;</a>");
        QTest::newRow("external document type")
            << QByteArray("<!DOCTYPE a SYSTEM \"file:///etc/passwd\"><a/>");
        QTest::newRow("deep nesting") << QByteArray("<a>").repeated(1000000);
        QTest::newRow("endless tag") << "<a b=\"" + QByteArray(3000000, 'x') + "\"/>";
        QTest::newRow("endless comment") << "<!--" + QByteArray(3000000, 'x') + "--><a/>";
        QTest::newRow("UTF-16") << QByteArray("\xFF\xFE<\0a\0/\0>\0", 10);
        QByteArray namespaces = "<a";
        for (int n = 0; n < 5000; ++n)
            namespaces += " xmlns:n" + QByteArray::number(n) + "=\"urn:x\"";
        QTest::newRow("endless namespaces") << namespaces + "/>";
    }

    void whatDocumentsMustNotHaveIsRefused()
    {
        QFETCH(QByteArray, document);
        QCOMPARE(journalOf(document, 65536), QStringList{QStringLiteral("error")});
    }

    void aLongTextComesInPieces()
    {
        const QByteArray text = QByteArray("x文&amp;").repeated(1000000);
        const QStringList lines = journalOf("<a>" + text + "</a>", 65536);
        QCOMPARE(lines.size(), 3);
        QCOMPARE(lines.at(1).size(), 5 + 3 * 1000000);
    }
};

HEADLESS_TEST_MAIN(FontXmlTest)
#include "tst_fontxml.moc"
