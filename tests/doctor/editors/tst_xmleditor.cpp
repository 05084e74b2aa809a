#include <QTest>

#include "tests/doctor/editors/editing.h"
#include "tests/doctor/editors/xmlfile.h"

using generated::Chooser;
using generated::xmlByQt;
using generated::XmlValues;

namespace {

/// A key that the document has, or one beside it that it lacks.
QStringList randomKey(Chooser &choose, const XmlValues &values)
{
    QStringList key = values.keys().at(choose.below(values.size()));
    if (choose.percent(70))
        return key;
    if (key.last().startsWith(QLatin1Char('@')))
        key.removeLast();
    const QByteArrayList names{"@new", "@k", "new", "a", "new[1]", "a[2]", "b[@k=v&\"]"};
    for (int count = 1 + choose.below(2); count > 0 && !key.last().startsWith(QLatin1Char('@'));
         --count)
        key.append(QString::fromUtf8(choose.of(names)));
    return key;
}

QStringList withoutIndex(QStringList key)
{
    for (QString &part : key)
        part.remove(QStringLiteral("[1]"));
    return key;
}

QStringList withIndex(QStringList key)
{
    for (QString &part : key) {
        if (!part.contains(QLatin1Char('[')) && !part.startsWith(QLatin1Char('@')))
            part += QStringLiteral("[1]");
    }
    return key;
}

} // namespace

class TestXmlEditor : public QObject
{
    Q_OBJECT

private slots:
    void findsWhatQtReads();
    void setsOneKeyOnly();
    void removesOneKeyOnly();
    void readsNothingThatQtRefuses();
    void changesNothingButTheKey_data();
    void changesNothingButTheKey();
    void removesNothingButTheKey_data();
    void removesNothingButTheKey();
    void refusesWhatItCannotRead_data();
    void refusesWhatItCannotRead();
    void refusesWhatItCannotWrite_data();
    void refusesWhatItCannotWrite();
    void refusesDeepNesting();
    void tellsTheLine();
    void hugeContentsEnd();

private:
    const Editing m_editor{doctor::Format::Xml};
};

void TestXmlEditor::findsWhatQtReads()
{
    Chooser choose(1);
    for (int i = 0; i < 2000; ++i) {
        const QByteArray content = generated::randomXml(choose);
        const auto values = xmlByQt(content);
        QVERIFY2(values, content.constData());
        for (auto value = values->begin(); value != values->end(); ++value) {
            QString found = m_editor.find(content, withoutIndex(value.key()));
            // Blank text between elements is not a value to Qt's side of the comparison.
            if (value.value().isEmpty() && found.trimmed().isEmpty())
                found.clear();
            QVERIFY2(found == value.value(),
                     (content + value.key().join(QLatin1Char('/')).toUtf8()).constData());
        }
    }
}

void TestXmlEditor::setsOneKeyOnly()
{
    Chooser choose(2);
    int changed = 0;
    int added = 0;
    const doctor::KeyEditor &editor = doctor::keyEditor(doctor::Format::Xml);
    for (int i = 0; i < 5000; ++i) {
        const QByteArray before = generated::randomXml(choose);
        const XmlValues values = xmlByQt(before).value();
        const QStringList key = withIndex(randomKey(choose, values));
        const QString value = choose.text();
        const auto edited = editor.set(before, key, value);
        if (!edited.content)
            continue;
        const QByteArray after = *edited.content;
        QCOMPARE(m_editor.find(after, key), value);
        const auto read = xmlByQt(after);
        QVERIFY2(read, after.constData());
        if (values.contains(key)) {
            XmlValues expected = values;
            expected.insert(key, value);
            QVERIFY2(*read == expected, (before + "\n->\n" + after).constData());
            ++changed;
        } else {
            QVERIFY2(read->size() >= values.size(), after.constData());
            for (auto old = values.begin(); old != values.end(); ++old) {
                const bool isParent = key.mid(0, old.key().size()) == old.key();
                QVERIFY2(read->value(old.key()) == old.value() || isParent,
                         (before + "\n->\n" + after).constData());
            }
            ++added;
        }
        if (!before.contains("/>") && m_editor.find(before, key) == QLatin1String("(none)"))
            QVERIFY2(generated::isInsertion(before, after), after.constData());
    }
    QVERIFY2(changed > 1500 && added > 300,
             qPrintable(QStringLiteral("%1 %2").arg(changed).arg(added)));
}

void TestXmlEditor::removesOneKeyOnly()
{
    Chooser choose(3);
    for (int i = 0; i < 5000; ++i) {
        const QByteArray before = generated::randomXml(choose);
        const XmlValues values = xmlByQt(before).value();
        const QStringList key = withIndex(randomKey(choose, values));
        if (key.size() == 1) {
            QVERIFY(m_editor.remove(before, key).startsWith("refused"));
            continue;
        }
        const QByteArray after = m_editor.remove(before, key);
        QVERIFY2(generated::isInsertion(after, before), after.constData());
        const auto read = xmlByQt(after);
        QVERIFY2(read, after.constData());
        if (m_editor.find(before, key) == QLatin1String("(none)")) {
            QCOMPARE(after, before);
        } else if (key.last().startsWith(QLatin1Char('@')) && values.contains(key)) {
            XmlValues expected = values;
            expected.remove(key);
            QVERIFY2(*read == expected, after.constData());
        } else {
            int below = 0;
            for (const QStringList &path : values.keys())
                below += path.mid(0, key.size()) == key ? 1 : 0;
            if (values.contains(key))
                QCOMPARE(read->size(), values.size() - below);
        }
    }
}

/// Documents with some bytes changed: most are broken.
void TestXmlEditor::readsNothingThatQtRefuses()
{
    Chooser choose(4);
    int read = 0;
    int refused = 0;
    const doctor::KeyEditor &editor = doctor::keyEditor(doctor::Format::Xml);
    for (int i = 0; i < 20000; ++i) {
        QByteArray content = generated::randomXml(choose);
        for (int count = choose.below(3); count > 0; --count)
            content.replace(
                choose.below(content.size()), choose.below(2),
                choose.of({"",     "<",    ">",   "/",    "&",        "\"",          "'",
                           "=",    "-",    "]]>", "<!--", "<?xml ?>", "\xff",        "\x01",
                           "&#0;", "<a/>", "1",   ";",    "k=''",     "\xef\xbf\xbe"}));
        const bool isRead =
            editor.remove(content, {QStringLiteral("x"), QStringLiteral("y")}).content.has_value();
        if (isRead)
            QVERIFY2(xmlByQt(content), content.constData());
        else
            ++refused;
        read += isRead ? 1 : 0;
    }
    QVERIFY2(read > 4000 && refused > 4000, qPrintable(QString::number(read)));
}

void TestXmlEditor::changesNothingButTheKey_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const QByteArray &content, const char *key,
                        const QString &value, const QByteArray &expected) {
        QTest::newRow(name) << content << QString::fromLatin1(key) << value << expected;
    };
    const QString plain = QStringLiteral("new");
    row("an element's text", "<a>\r\n <b>old</b >\r\n</a>", "a/b", plain,
        "<a>\r\n <b>new</b >\r\n</a>");
    row("the first of two elements", "<a><b>1</b><b>2</b></a>", "a/b", plain,
        "<a><b>new</b><b>2</b></a>");
    row("the second of two elements", "<a><b>1</b><c/><b>2</b></a>", "a/b[2]", plain,
        "<a><b>1</b><c/><b>new</b></a>");
    row("an element by its attribute", "<a><b k='x'/><b k='y'>1</b></a>", "a/b[@k=y]", plain,
        "<a><b k='x'/><b k='y'>new</b></a>");
    row("an attribute in its own quotes", "<a k = 'old' l=\"\"/>", "a/@k", QStringLiteral("'\"<\n"),
        "<a k = '&apos;\"&lt;&#10;' l=\"\"/>");
    row("a new attribute", "<a k='1' />", "a/@l", plain, "<a k='1' l=\"new\" />");
    row("a first attribute", "<a\n>x</a>", "a/@l", plain, "<a l=\"new\"\n>x</a>");
    row("comments between text stay", "<a>x<!-- <c> -->y<![CDATA[z]]></a>", "a", plain,
        "<a>new<!-- <c> --></a>");
    row("an empty element is opened", "<a><b k='1' /></a>", "a/b", plain,
        "<a><b k='1'>new</b></a>");
    row("an element without text", "<a><b></b></a>", "a/b", plain, "<a><b>new</b></a>");
    row("special characters", "<a/>", "a", QStringLiteral("<&>\r\n]]>\""),
        "<a>&lt;&amp;&gt;&#13;\n]]&gt;\"</a>");
    row("an element indented as the last one", "<a>\n  <c/>\n</a>\n", "a/b", plain,
        "<a>\n  <c/>\n  <b>new</b>\n</a>\n");
    row("an element in an empty one", "<a/>", "a/b/c", plain, "<a><b><c>new</c></b></a>");
    row("elements with attributes", "<a></a>", "a/b[@k=x&]/c/@l", plain,
        "<a><b k=\"x&amp;\"><c l=\"new\"/></b></a>");
    row("a next element of a name", "<a><b/></a>", "a/b[2]", plain, "<a><b/><b>new</b></a>");
    row("behind mark and declaration", "\xef\xbb\xbf<?xml version=\"1.0\"?>\n<a>1</a><!-- x -->",
        "a", plain, "\xef\xbb\xbf<?xml version=\"1.0\"?>\n<a>new</a><!-- x -->");
    row("what is there already stays as written", "<a><![CDATA[x]]></a>", "a", QStringLiteral("x"),
        "<a><![CDATA[x]]></a>");
}

void TestXmlEditor::changesNothingButTheKey()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QByteArray, expected);
    QCOMPARE(m_editor.set(content, key.split(QLatin1Char('/')), value), expected);
    QCOMPARE(m_editor.find(expected, key.split(QLatin1Char('/'))), value);
}

void TestXmlEditor::removesNothingButTheKey_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const QByteArray &content, const char *key,
                        const QByteArray &expected) {
        QTest::newRow(name) << content << QString::fromLatin1(key) << expected;
    };
    row("an element with its line", "<a>\n  <b>1</b>\n  <c/>\n</a>", "a/b", "<a>\n  <c/>\n</a>");
    row("an element with others in it", "<a><b><c/>x</b></a>", "a/b", "<a></a>");
    row("a comment before it stays", "<a>\n  <!-- b -->\n  <b/>\n</a>", "a/b",
        "<a>\n  <!-- b -->\n</a>");
    row("text around it stays", "<a>x <b/> y</a>", "a/b", "<a>x  y</a>");
    row("one of several", "<a><b/><b k=''/></a>", "a/b", "<a><b k=''/></a>");
    row("an attribute with the space before it", "<a k='1'\n  l='2' m=''/>", "a/@l",
        "<a k='1' m=''/>");
    row("nothing that is missing", "<a/>", "a/b", "<a/>");
}

void TestXmlEditor::removesNothingButTheKey()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, key);
    QFETCH(QByteArray, expected);
    QCOMPARE(m_editor.remove(content, key.split(QLatin1Char('/'))), expected);
}

void TestXmlEditor::refusesWhatItCannotRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a document type") << QByteArray("<!DOCTYPE a><a/>");
    QTest::newRow("entities") << QByteArray("<!DOCTYPE a [<!ENTITY e \"x\">]><a>&e;</a>");
    QTest::newRow("an unknown entity") << QByteArray("<a>&e;</a>");
    QTest::newRow("an unknown entity in an attribute") << QByteArray("<a k='&e;'/>");
    QTest::newRow("an end tag of another name") << QByteArray("<a></b>");
    QTest::newRow("an open element") << QByteArray("<a><b></b>");
    QTest::newRow("two roots") << QByteArray("<a/><a/>");
    QTest::newRow("text beside the root") << QByteArray("<a/>x");
    QTest::newRow("an attribute twice") << QByteArray("<a k='' k=''/>");
    QTest::newRow("a control character") << QByteArray("<a>\x01</a>");
    QTest::newRow("a zero by number") << QByteArray("<a>&#0;</a>");
    QTest::newRow("broken UTF-8") << QByteArray("<a>\xc0\x80</a>");
    QTest::newRow("half a pair") << QByteArray("<a>\xed\xa0\x80</a>");
    QTest::newRow("another encoding")
        << QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><a/>");
    QTest::newRow("another version") << QByteArray("<?xml version='1.1'?><a/>");
    QTest::newRow("a declaration inside") << QByteArray("<a><?xml version='1.0'?></a>");
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe<\0a\0/\0>\0", 10);
    QTest::newRow("more than 64 MiB") << QByteArray(64 * 1024 * 1024 + 1, ' ');
}

void TestXmlEditor::refusesWhatItCannotRead()
{
    QFETCH(QByteArray, content);
    QVERIFY(m_editor.refuses(content, {QStringLiteral("a"), QStringLiteral("@k")}));
}

void TestXmlEditor::refusesWhatItCannotWrite_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    const QString plain = QStringLiteral("x");
    QTest::newRow("a zero") << "a/t" << QString(1, QChar::Null);
    QTest::newRow("a control character") << "a/t" << QString(QChar(1));
    QTest::newRow("a character that is none") << "a/t" << QString(QChar(0xfffe));
    QTest::newRow("half a character") << "a/t" << QString(QChar(0xdc00));
    QTest::newRow("text over elements") << "a" << plain;
    QTest::newRow("another root") << "b" << plain;
    QTest::newRow("an element in text") << "a/t/b" << plain;
    QTest::newRow("a third before the second") << "a/t[3]" << plain;
    QTest::newRow("an attribute twice") << "a/b[@k=1]/@k" << plain;
    for (const char *key : {"a/", "a/1", "a/b[", "a/b[0]", "a/b[x]", "a/b[@k]", "a/b[@=1]", "a/@",
                            "a/@1", "a/b c", "@k", "a/b]"})
        QTest::newRow(key) << key << plain;
}

void TestXmlEditor::refusesWhatItCannotWrite()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QVERIFY(m_editor.refusesToSet("<a><t>x</t></a>", key.split(QLatin1Char('/')), value));
}

void TestXmlEditor::refusesDeepNesting()
{
    const auto nested = [](int depth) {
        return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
    };
    const QStringList key{QStringLiteral("a"), QStringLiteral("b")};
    QCOMPARE(m_editor.remove(nested(256), key), nested(256));
    QVERIFY(m_editor.refuses(nested(257), key));
    QVERIFY(m_editor.refuses(QByteArray("<a>").repeated(5 * 1024 * 1024), key));
}

void TestXmlEditor::tellsTheLine()
{
    const QByteArray content("<a>\r\n<b\r\nk='1'>2</b></a>");
    QCOMPARE(m_editor.line(content, {QStringLiteral("a"), QStringLiteral("b")}), 2);
    QCOMPARE(
        m_editor.line(content, {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("@k")}),
        3);
}

void TestXmlEditor::hugeContentsEnd()
{
    // What took the square of its time would not end before the test is ended.
    constexpr int size = 1024 * 1024;
    const QStringList key{QStringLiteral("a"), QStringLiteral("b")};
    for (const QByteArray &part :
         QByteArrayList{"<b/>", "<b k=''>x</b>", "&amp;", "<!---->x", "&", "<", "<b ", "<![CDATA[",
                        "<![CDATA[]]>", "<?p?>", "</", "<!--"}) {
        const QByteArray many = part.repeated(size / part.size());
        for (const QByteArray &content : {"<a>" + many + "</a>", "<a><b>" + many + "</b></a>"}) {
            m_editor.find(content, key);
            m_editor.set(content, key, QStringLiteral("x"));
            m_editor.remove(content, key);
        }
    }
    QByteArray attributes;
    for (int i = 0; attributes.size() < size; ++i)
        attributes += " k" + QByteArray::number(i) + "=''";
    QVERIFY(m_editor.refuses("<a" + attributes + "/>", key));
}

QTEST_GUILESS_MAIN(TestXmlEditor)

#include "tst_xmleditor.moc"
