#include <QTest>

#include "tests/doctor/editors/editing.h"
#include "tests/doctor/editors/xcufile.h"

using generated::Chooser;
using generated::decoded;
using generated::randomItem;
using generated::Registry;
using generated::xcu;

class TestXcuEditor : public QObject
{
    Q_OBJECT

private slots:
    void setsOneKeyOnly();
    void removesOneKeyOnly();
    void changesNothingButTheKey_data();
    void changesNothingButTheKey();
    void removesNothingButTheKey_data();
    void removesNothingButTheKey();
    void findsPropertiesInNodesOfSets();
    void tellsNoValueFromAnEmptyOne();
    void refusesWhatIsNoPlainValue_data();
    void refusesWhatIsNoPlainValue();
    void refusesOtherFiles_data();
    void refusesOtherFiles();
    void hugeContentsEnd();

private:
    const Editing m_editor{doctor::Format::Xcu};
};

void TestXcuEditor::setsOneKeyOnly()
{
    Chooser choose(1);
    for (int i = 0; i < 4000; ++i) {
        QByteArray items;
        for (int count = choose.below(8); count > 0; --count)
            items += randomItem(choose);
        const QByteArray before = xcu(items);
        const QStringList key{decoded(choose.of(generated::xcuPaths)),
                              decoded(choose.of(generated::xcuNames))};
        QString value = choose.text(QStringLiteral("\u0001\u001f"));
        const auto edited = doctor::keyEditor(doctor::Format::Xcu).set(before, key, value);
        auto expected = Registry::read(before);
        QVERIFY2(expected, before.constData());
        if (!edited.content) {
            QVERIFY2(before.contains("xml:lang"), before.constData());
            continue;
        }
        const QByteArray after = *edited.content;
        QCOMPARE(m_editor.find(after, key), value);
        const bool isNew = !expected->contains(key);
        expected->insert(key, value);
        QVERIFY2(Registry::read(after) == expected, (before + "\n->\n" + after).constData());
        if (isNew)
            QVERIFY2(generated::isInsertion(before, after), after.constData());
    }
}

void TestXcuEditor::removesOneKeyOnly()
{
    Chooser choose(2);
    int removed = 0;
    for (int i = 0; i < 4000; ++i) {
        QByteArray items;
        for (int count = choose.below(8); count > 0; --count)
            items += randomItem(choose);
        const QByteArray before = xcu(items);
        const QStringList key{decoded(choose.of(generated::xcuPaths)),
                              decoded(choose.of(generated::xcuNames))};
        const QByteArray after = m_editor.remove(before, key);
        auto expected = Registry::read(before);
        removed += expected->remove(key);
        QVERIFY2(Registry::read(after) == expected, (before + "\n->\n" + after).constData());
        QCOMPARE(m_editor.find(after, key), QStringLiteral("(none)"));
    }
    QVERIFY2(removed > 400, qPrintable(QString::number(removed)));
}

void TestXcuEditor::changesNothingButTheKey_data()
{
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("expected");
    const auto item = [](const QByteArray &value) {
        return "<item oor:path=\"/o.A/B\"><prop oor:name=\"N\" oor:op=\"fuse\">" + value +
               "</prop></item>\n";
    };
    const auto row = [](const char *name, const QByteArray &items, const QString &value,
                        const QByteArray &expected) {
        QTest::newRow(name) << items << value << expected;
    };
    const QString plain = QStringLiteral("new");
    const QByteArray added = item("<value>new</value>");
    row("a value", item("<value>old</value>"), plain, added);
    row("a value that is empty", item("<value/>"), plain, added);
    row("a value that is none", item("<value xsi:nil=\"true\"/>"), plain, added);
    row("a value that is none, with an end", item("<value xsi:nil='true'></value>"), plain, added);
    row("the separator stays", item("<value oor:separator=\";\">a;b</value>"),
        QStringLiteral("c;d"), item("<value oor:separator=\";\">c;d</value>"));
    row("the last of two", item("<value>1</value>") + item("<value>2</value>"), plain,
        item("<value>1</value>") + added);
    row("the first item", "", plain, added);
    row("a new item behind the others", "<item oor:path=\"/o.A\"/>\n", plain,
        "<item oor:path=\"/o.A\"/>\n" + added);
    row("characters that XML lacks", item("<value/>"), QStringLiteral("a\u0001<b"),
        item("<value>a<unicode oor:scalar=\"1\"/>&lt;b</value>"));
    row("a value for a language stays", item("<value xml:lang=\"de\">x</value><value>y</value>"),
        plain, item("<value xml:lang=\"de\">x</value><value>new</value>"));
    row("a property that is removed later",
        item("<value>1</value>") +
            "<item oor:path=\"/o.A\"><node oor:name=\"B\" oor:op=\"remove\"/></item>\n",
        plain,
        item("<value>1</value>") +
            "<item oor:path=\"/o.A\"><node oor:name=\"B\" oor:op=\"remove\"/></item>\n" + added);
}

void TestXcuEditor::changesNothingButTheKey()
{
    QFETCH(QByteArray, items);
    QFETCH(QString, value);
    QFETCH(QByteArray, expected);
    const QStringList key{QStringLiteral("/o.A/B"), QStringLiteral("N")};
    QCOMPARE(m_editor.set(xcu(items), key, value), xcu(expected));
    QCOMPARE(m_editor.find(xcu(expected), key), value);
}

void TestXcuEditor::removesNothingButTheKey_data()
{
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray property("<prop oor:name=\"N\" oor:op=\"fuse\"><value>1</value></prop>");
    const QByteArray other("<prop oor:name=\"O\" oor:op=\"fuse\"><value>2</value></prop>");
    const auto item = [](const QByteArray &inside) {
        return "<item oor:path=\"/o.A/B\">" + inside + "</item>";
    };
    QTest::newRow("an item") << item(property) + '\n' + item(other) + '\n' << item(other) + '\n';
    QTest::newRow("all items") << item(property) + '\n' + item(property) + '\n' << QByteArray("");
    QTest::newRow("a property beside another") << item(property + other) << item(other);
    QTest::newRow("a property beside a comment")
        << item("<!-- c -->" + property) << item("<!-- c -->");
    QTest::newRow("a property in a node")
        << QByteArray("<item oor:path=\"/o.A\"><node oor:name=\"B\">" + property + "</node></item>")
        << QByteArray("<item oor:path=\"/o.A\"><node oor:name=\"B\"></node></item>");
    QTest::newRow("nothing that is missing") << item(other) << item(other);
}

void TestXcuEditor::removesNothingButTheKey()
{
    QFETCH(QByteArray, items);
    QFETCH(QByteArray, expected);
    const QByteArray after =
        m_editor.remove(xcu(items), {QStringLiteral("/o.A/B"), QStringLiteral("N")});
    // The line end before an item goes with it.
    QCOMPARE(QByteArray(after).replace('\n', ""), xcu(expected).replace('\n', ""));
}

void TestXcuEditor::findsPropertiesInNodesOfSets()
{
    const QByteArray content =
        xcu("<item oor:path=\"/o.A/Set\"><node oor:name=\"a/b's\" oor:op=\"replace\">"
            "<prop oor:name=\"N\"><value>1</value></prop></node></item>");
    QCOMPARE(m_editor.find(
                 content, {QStringLiteral("/o.A/Set/o.A:Type['a/b&apos;s']"), QStringLiteral("N")}),
             QStringLiteral("1"));
    QCOMPARE(
        m_editor.find(content, {QStringLiteral("/o.A/Set/['a/b&apos;s']"), QStringLiteral("N")}),
        QStringLiteral("1"));
    QCOMPARE(m_editor.find(content, {QStringLiteral("/o.A/Set/a/b's"), QStringLiteral("N")}),
             QStringLiteral("1"));
    QCOMPARE(m_editor.find(content, {QStringLiteral("/o.A/Set/a"), QStringLiteral("N")}),
             QStringLiteral("(none)"));
    QCOMPARE(m_editor.line(content, {QStringLiteral("/o.A/Set/a/b's"), QStringLiteral("N")}), 3);
}

void TestXcuEditor::tellsNoValueFromAnEmptyOne()
{
    const auto value = [](const QByteArray &text) {
        const QByteArray items =
            "<item oor:path=\"/o.A\"><prop oor:name=\"N\">" + text + "</prop></item>";
        return doctor::keyEditor(doctor::Format::Xcu)
            .find(xcu(items), {QStringLiteral("/o.A"), QStringLiteral("N")});
    };
    QVERIFY(value("<value xsi:nil=\"true\"/>")->value.isNull());
    QVERIFY(!value("<value/>")->value.isNull());
    QVERIFY(value("<value></value>")->value.isEmpty());
    QVERIFY(!value(""));
}

void TestXcuEditor::refusesWhatIsNoPlainValue_data()
{
    QTest::addColumn<QByteArray>("values");
    QTest::addColumn<QString>("value");
    const QString plain = QStringLiteral("x");
    QTest::newRow("a list") << QByteArray("<value><it>a</it></value>") << plain;
    QTest::newRow("a comment") << QByteArray("<value>a<!-- b --></value>") << plain;
    QTest::newRow("values for languages")
        << QByteArray("<value xml:lang=\"de\">a</value>") << plain;
    QTest::newRow("a zero") << QByteArray("<value/>") << QString(1, QChar::Null);
    QTest::newRow("half a character") << QByteArray("<value/>") << QString(QChar(0xd800));
}

void TestXcuEditor::refusesWhatIsNoPlainValue()
{
    QFETCH(QByteArray, values);
    QFETCH(QString, value);
    const QByteArray items =
        "<item oor:path=\"/o.A\"><prop oor:name=\"N\">" + values + "</prop></item>";
    QVERIFY(
        m_editor.refusesToSet(xcu(items), {QStringLiteral("/o.A"), QStringLiteral("N")}, value));
}

void TestXcuEditor::refusesOtherFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("path");
    QTest::newRow("nothing") << QByteArray() << "/o.A";
    QTest::newRow("another root") << QByteArray("<items/>") << "/o.A";
    QTest::newRow("another namespace") << QByteArray("<oor:items xmlns:oor=\"urn:x\"/>") << "/o.A";
    QTest::newRow("an entity") << xcu("<item oor:path=\"&x;\"/>") << "/o.A";
    QTest::newRow("a document type") << QByteArray("<!DOCTYPE x>") + xcu("") << "/o.A";
    QTest::newRow("an open element") << xcu("<item>") << "/o.A";
    QTest::newRow("no path") << xcu("") << "o.A";
}

void TestXcuEditor::refusesOtherFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, path);
    QVERIFY(m_editor.refuses(content, {path, QStringLiteral("N")}));
}

void TestXcuEditor::hugeContentsEnd()
{
    // What took the square of its time would not end before the test is ended.
    constexpr int size = 1024 * 1024;
    const QStringList key{QStringLiteral("/o.A"), QStringLiteral("N")};
    const QByteArray property("<prop oor:name=\"N\"><value/></prop>");
    const QByteArray item = "<item oor:path=\"/o.A\">" + property + "</item>";
    for (const QByteArray &items :
         {item.repeated(size / item.size()),
          "<item oor:path=\"/o.A\">" + property.repeated(size / property.size()) + "</item>",
          "<item oor:path=\"/o.A\"><prop oor:name=\"N\"><value>" +
              QByteArray("<unicode oor:scalar=\"1\"/>").repeated(size / 26) +
              "</value></prop></item>"}) {
        const QByteArray after = m_editor.set(xcu(items), key, QStringLiteral("x"));
        QCOMPARE(m_editor.find(after, key), QStringLiteral("x"));
        QCOMPARE(m_editor.find(m_editor.remove(after, key), key), QStringLiteral("(none)"));
    }
}

QTEST_GUILESS_MAIN(TestXcuEditor)

#include "tst_xcueditor.moc"
