#include <QTest>

#include "tests/doctor/editors/editing.h"
#include "tests/doctor/editors/jsonfile.h"

using generated::Chooser;
using generated::jsonByQt;
using generated::randomJson;
using generated::valueAt;
using generated::with;

namespace {

bool isNumber(const QString &text)
{
    return text == QString::number(text.toInt());
}

/// A way down the value; it ends at a scalar, an empty container or anywhere.
QStringList randomKey(Chooser &choose, const QJsonValue &value)
{
    QStringList key;
    QJsonValue place = value;
    while ((place.isArray() || place.isObject()) && (key.isEmpty() || choose.percent(80))) {
        const int size = place.isArray() ? place.toArray().size() : place.toObject().size();
        const bool isNew = size == 0 || choose.percent(15);
        if (place.isArray())
            key.append(QString::number(isNew ? size : choose.below(size)));
        else
            key.append(isNew ? choose.text(QStringLiteral("xyz"))
                             : place.toObject().keys().at(choose.below(size)));
        place = valueAt(place, {key.last()});
    }
    return key;
}

bool isThere(const QJsonValue &document, const QStringList &key)
{
    return !valueAt(document, key).isUndefined();
}

} // namespace

class TestJsonEditor : public QObject
{
    Q_OBJECT

private slots:
    void setsOneKeyOnly();
    void removesOneKeyOnly();
    void readsAndRefusesAsQtDoes();
    void changesNothingButTheKey_data();
    void changesNothingButTheKey();
    void removesNothingButTheKey_data();
    void removesNothingButTheKey();
    void setsNumbersAndWords();
    void refusesToOverwriteOthers_data();
    void refusesToOverwriteOthers();
    void refusesDeepNesting();
    void tellsTheLine();
    void hugeContentsEnd();

private:
    const Editing m_editor{doctor::Format::Json};
};

void TestJsonEditor::setsOneKeyOnly()
{
    Chooser choose(1);
    int set = 0;
    for (int i = 0; i < 6000; ++i) {
        const bool hasTwins = choose.percent(20);
        const QByteArray before = randomJson(choose, hasTwins);
        const QJsonValue document = jsonByQt(before);
        QVERIFY2(!document.isUndefined(), before.constData());
        const QStringList key = randomKey(choose, document);
        const QString value = choose.percent(30) ? QStringLiteral("12") : choose.text();
        const QJsonValue old = valueAt(document, key);
        if (old.isArray() || old.isObject()) {
            QVERIFY(m_editor.refusesToSet(before, key, value));
            continue;
        }
        const QByteArray after = m_editor.set(before, key, value);
        QCOMPARE(m_editor.find(after, key), value);
        const bool isBare = !old.isString() && !old.isUndefined() && isNumber(value);
        const QJsonValue expected = isBare ? QJsonValue(value.toInt()) : QJsonValue(value);
        QVERIFY2(jsonByQt(after) == with(document, key, expected), after.constData());
        if (old.isUndefined())
            QVERIFY2(generated::isInsertion(before, after), after.constData());
        ++set;
    }
    QVERIFY2(set > 4000, qPrintable(QString::number(set)));
}

void TestJsonEditor::removesOneKeyOnly()
{
    Chooser choose(2);
    for (int i = 0; i < 6000; ++i) {
        const bool hasTwins = choose.percent(20);
        const QByteArray before = randomJson(choose, hasTwins);
        const QJsonValue document = jsonByQt(before);
        const QStringList key = randomKey(choose, document);
        const QByteArray after = m_editor.remove(before, key);
        if (!isThere(document, key)) {
            QCOMPARE(after, before);
            continue;
        }
        if (!hasTwins)
            QVERIFY2(generated::isInsertion(after, before), after.constData());
        QVERIFY2(jsonByQt(after) == with(document, key, QJsonValue::Undefined),
                 (before + " -> " + after).constData());
    }
}

/// Documents with some bytes changed: most are broken.
void TestJsonEditor::readsAndRefusesAsQtDoes()
{
    Chooser choose(3);
    int broken = 0;
    const doctor::KeyEditor &editor = doctor::keyEditor(doctor::Format::Json);
    for (int i = 0; i < 20000; ++i) {
        QByteArray content = randomJson(choose, false);
        for (int count = choose.below(4); count > 0; --count)
            content.replace(choose.below(content.size()), choose.below(2),
                            choose.of({"", ",", "{", "}", "[", "]", "\"", "\\", ":", "0", "e", "-",
                                       "\xff", "\x01", "t", ".", "\xed\xa0\x80", "//"}));
        const bool isRead = editor.remove(content, {QStringLiteral("x")}).content.has_value();
        broken += isRead ? 0 : 1;
        // Qt also takes numbers such as "01" and a zero byte behind the end.
        if (isRead)
            QVERIFY2(!jsonByQt(content).isUndefined(), content.constData());
    }
    QVERIFY2(broken > 5000 && broken < 17000, qPrintable(QString::number(broken)));
}

void TestJsonEditor::changesNothingButTheKey_data()
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
    const QString twelve = QStringLiteral("12");
    row("a string", "{ \"a\" : \"old\" }\r\n", "a", plain, "{ \"a\" : \"new\" }\r\n");
    row("a number stays one", "{\"a\":1.5}", "a", twelve, "{\"a\":12}");
    row("a string stays one", "{\"a\":\"1\"}", "a", twelve, "{\"a\":\"12\"}");
    row("a word stays one", "{\"a\":true}", "a", QStringLiteral("false"), "{\"a\":false}");
    row("text replaces a number", "{\"a\":1}", "a", QStringLiteral("012"), "{\"a\":\"012\"}");
    row("the last of two members", R"({"a":1,"\u0061":2,"b":3})", "a", twelve,
        R"({"a":1,"\u0061":12,"b":3})");
    row("the last of two objects", R"({"a":{"b":1},"a":{"b":2}})", "a/b", twelve,
        R"({"a":{"b":1},"a":{"b":12}})");
    row("a later object hides what the first has", R"({"a":{"b":1},"a":{}})", "a/b", plain,
        R"({"a":{"b":1},"a":{"b": "new"}})");
    row("an array's element", "[[0],[1,2]]", "1/1", twelve, "[[0],[1,12]]");
    row("an array's next element", "[1,\n 2]", "2", plain, "[1,\n 2,\n \"new\"]");
    row("a member written as the last one", "{\n  \"a\" : 1\n}\n", "b", plain,
        "{\n  \"a\" : 1,\n  \"b\" : \"new\"\n}\n");
    row("a member on one line", "{\"a\":1}", "b", plain, "{\"a\":1,\"b\":\"new\"}");
    row("a first member", "{\n}\n", "b", plain, "{\"b\": \"new\"\n}\n");
    row("objects on the way", "{}", "a/b/c", plain, R"({"a": {"b": {"c": "new"}}})");
    row("special characters", "{\"a\":\"\"}", "a", QStringLiteral("\"\\\n\u0001é/"),
        "{\"a\":\"\\\"\\\\\\n\\u0001\xc3\xa9/\"}");
}

void TestJsonEditor::changesNothingButTheKey()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QByteArray, expected);
    QCOMPARE(m_editor.set(content, key.split(QLatin1Char('/')), value), expected);
}

void TestJsonEditor::removesNothingButTheKey_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const QByteArray &content, const char *key,
                        const QByteArray &expected) {
        QTest::newRow(name) << content << QString::fromLatin1(key) << expected;
    };
    row("a first member", "{\n \"a\": 1,\n \"b\": 2\n}", "a", "{\n \"b\": 2\n}");
    row("a last member", "{\n \"a\": 1,\n \"b\": 2\n}", "b", "{\n \"a\": 1\n}");
    row("an only member", "{ \"a\": 1 }", "a", "{ }");
    row("all of one name", R"({"a":1,"b":2,"a":3,"a":{}})", "a", R"({"b":2})");
    row("all that there are", R"({"a":1,"a":2})", "a", "{}");
    row("first and last", R"({"a":1,"b":2,"a":3})", "a", R"({"b":2})");
    row("only in the object that counts", R"({"o":{"a":1},"o":{"a":2}})", "o/a",
        R"({"o":{"a":1},"o":{}})");
    row("an object", R"({"o":{"a":[1,{}]},"p":[]})", "o", R"({"p":[]})");
    row("an element", "[1, 2, 3]", "1", "[1, 3]");
    row("nothing that is missing", "[1, 2]", "2", "[1, 2]");
}

void TestJsonEditor::removesNothingButTheKey()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, key);
    QFETCH(QByteArray, expected);
    QCOMPARE(m_editor.remove(content, key.split(QLatin1Char('/'))), expected);
}

void TestJsonEditor::setsNumbersAndWords()
{
    const QStringList key{QStringLiteral("a")};
    QCOMPARE(doctor::setBareJson("{}", key, "true").content.value_or(""),
             QByteArray("{\"a\": true}"));
    QCOMPARE(doctor::setBareJson("{\"a\":\"1\"}", key, "-2e3").content.value_or(""),
             QByteArray("{\"a\":-2e3}"));
    for (const char *value :
         {"", "01", "x", "\"a\"", "[]", "1 ", "nul", "trues", "1,2", "+1", ".5"})
        QVERIFY2(!doctor::setBareJson("{}", key, value).content, value);
}

void TestJsonEditor::refusesToOverwriteOthers_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("key");
    QTest::newRow("an object") << QByteArray("{\"a\":{}}") << "a";
    QTest::newRow("an array") << QByteArray("{\"a\":[]}") << "a";
    QTest::newRow("a number on the way") << QByteArray("{\"a\":1}") << "a/b";
    QTest::newRow("an index beyond the next") << QByteArray("[1]") << "2";
    QTest::newRow("a name in an array") << QByteArray("[1]") << "a";
    QTest::newRow("an index with a zero before") << QByteArray("[1]") << "00";
    QTest::newRow("a value alone") << QByteArray("1") << "a";
    QTest::newRow("nothing") << QByteArray("") << "a";
    QTest::newRow("a comment") << QByteArray("{} // x") << "a";
    QTest::newRow("a comma too many") << QByteArray("{\"b\":1,}") << "a";
    QTest::newRow("a zero") << QByteArray("{}\0", 3) << "a";
    QTest::newRow("two values") << QByteArray("{}{}") << "a";
}

void TestJsonEditor::refusesToOverwriteOthers()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, key);
    QVERIFY(m_editor.refusesToSet(content, key.split(QLatin1Char('/')), QStringLiteral("x")));
    QVERIFY(m_editor.refusesToSet("{}", {QStringLiteral("a")}, QChar(0xd800)));
    QVERIFY(m_editor.refuses("{}", {}));
}

void TestJsonEditor::refusesDeepNesting()
{
    const auto nested = [](int depth) { return QByteArray(depth, '[') + QByteArray(depth, ']'); };
    const QStringList key{QStringLiteral("x")};
    QCOMPARE(m_editor.remove(nested(256), key), nested(256));
    QVERIFY(m_editor.refuses(nested(257), key));
    QVERIFY(m_editor.refuses(QByteArray(32 * 1024 * 1024, '['), key));
}

void TestJsonEditor::tellsTheLine()
{
    QCOMPARE(m_editor.line("{\r\n\"a\":\n1}", {QStringLiteral("a")}), 3);
}

void TestJsonEditor::hugeContentsEnd()
{
    // What took the square of its time would not end before the test is ended.
    constexpr int size = 1024 * 1024;
    const QStringList key{QStringLiteral("a"), QStringLiteral("a")};
    for (const QByteArray &part :
         QByteArrayList{R"("a":1)", R"("b":1)", R"("a":{"a":2})", R"("\n":[])"}) {
        const int count = size / part.size();
        const QByteArray members =
            (part + ',').repeated(count) + R"("a":{)" + (part + ',').repeated(count) + R"("c":1})";
        const QByteArray content = '{' + members + '}';
        m_editor.find(content, key);
        QVERIFY(!m_editor.set(content, key, QStringLiteral("x")).isEmpty());
        QVERIFY(m_editor.remove(content, key).size() <= content.size());
    }
    const QByteArray spaces =
        "{\"a\":1" + QByteArray(size, ' ') + "," + QByteArray(size, ' ') + "\"b\":2}";
    QCOMPARE(m_editor.remove(spaces, {QStringLiteral("b")}), QByteArray("{\"a\":1}"));
    m_editor.find('"' + QByteArray("\\\"").repeated(size), key);
}

QTEST_GUILESS_MAIN(TestJsonEditor)

#include "tst_jsoneditor.moc"
