#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <ctime>

#include <sys/stat.h>

#include "doctor/format/checkreader.h"

using namespace doctor;

namespace {

/// "1:5 message", for the first mistake of a file.
QString firstMistake(const CheckFile &file)
{
    if (file.mistakes.isEmpty())
        return QStringLiteral("none");
    const Mistake &mistake = file.mistakes.first();
    return QStringLiteral("%1:%2 %3").arg(mistake.line).arg(mistake.column).arg(mistake.message);
}

CheckFile read(const QByteArray &content)
{
    return readChecks(content, QStringLiteral("test.json"));
}

/// A right check whose look is @p look.
QByteArray looking(const QByteArray &look)
{
    return "{\"id\": \"a.b\", \"title\": \"T\", \"finding\": {\"text\": \"F\"},\n\"look\": " +
           look + "}";
}

QByteArray saying(const QByteArray &text)
{
    return "{\"id\": \"a.b\", \"title\": \"T\", \"look\": {\"file\": \"/x\"},\n\"finding\": "
           "{\"text\": " +
           text + "}}";
}

QByteArray repairing(const QByteArray &step)
{
    return "{\"id\": \"a.b\", \"title\": \"T\", \"look\": {\"file\": \"/x\"}, \"finding\": "
           "{\"text\": "
           "\"F\"}, \"repairs\": [{\"id\": \"r\", \"title\": \"R\", \"steps\":\n[" +
           step + "]}]}";
}

} // namespace

class TestCheckReader : public QObject
{
    Q_OBJECT

private slots:
    void mistakesHaveTheirPlace_data();
    void mistakesHaveTheirPlace();
    void rightFilesHaveNoMistake_data();
    void rightFilesHaveNoMistake();
    void aTenLineCheckIsRead();
    void textsAreChosenByLocale();
    void severalMistakesAreAllReported();
    void kindsHaveNamesOfTheirOwn();
    void hostileFilesCostLittle_data();
    void hostileFilesCostLittle();
    void aPipeIsNoCheckFile();
};

void TestCheckReader::mistakesHaveTheirPlace_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *name, const QByteArray &content, const char *place,
                        const char *words) {
        QTest::newRow(name) << content << QString::fromLatin1(place) << QString::fromUtf8(words);
    };
    row("no JSON", "{\n \"id\": }", "2:8 ", "value, object or array expected");
    row("text behind", looking("{\"file\": \"/x\"}") + "x", "", "");
    row("twice", "{\"id\": \"a\", \"id\": \"b\"}", "", "Duplicate key");
    row("a list", "[]", "1:1 ", "expected an object");
    row("no id", "{}", "1:1 ", "expected an \"id\"");
    row("unknown name", "{\"id\": \"a\",\n  \"tile\": \"x\"}", "2:3 ", "did you mean \"title\"?");
    row("unknown probe", looking("{\"fil\": \"/x\"}"), "2:9 ", "did you mean \"file\"?");
    row("unknown value", looking("{\"file\": \"/x\", \"ownr\": \"me\"}"), "2:24 ",
        "did you mean \"owner\"?");
    row("no size", looking("{\"file\": \"/x\", \"size\": {\"over\": \"10 bananas\"}}"), "2:41 ",
        "expected a size such as \"10 MiB\"");
    row("no age", looking("{\"file\": \"/x\", \"age\": {\"over\": \"soon\"}}"), "2:40 ",
        "an age such as");
    row("no mode", looking("{\"file\": \"/x\", \"mode\": {\"has\": \"w\"}}"), "2:40 ",
        "a mode such as");
    row("no flag", looking("{\"file\": \"/x\", \"exists\": \"yes\"}"), "2:34 ",
        "expected true or false");
    row("order of flags", looking("{\"file\": \"/x\", \"exists\": {\"over\": true}}"), "2:35 ",
        "unknown name \"over\"");
    row("two dots", looking("{\"file\": \"$HOME/../x\"}"), "2:18 ", "may not contain \"..\"");
    row("relative", looking("{\"file\": \"x\"}"), "2:18 ", "not an absolute path");
    row("no key", looking("{\"ini\": \"/x\"}"), "2:9 ", "expected \"key\"");
    row("no pattern", looking("{\"line\": \"/x\", \"pattern\": \"(\"}"), "2:35 ", "");
    row("pattern's limits",
        looking("{\"line\": \"/x\", \"pattern\": \"(*LIMIT_MATCH=999999999)x\"}"), "2:35 ",
        "may not begin with \"(*\"");
    row("no program", looking("{\"programVersion\": \"rm\"}"), "2:28 ", "expected one of");
    row("unknown variable's form", looking("{\"file\": \"${HOME\"}"), "2:18 ", "${NAME}");
    row("empty all", looking("{\"all\": []}"), "2:17 ", "expected a list of 1 to 50");
    row("unknown placeholder", saying("\"{pth}\""), "2:21 ", "did you mean \"path\"?");
    row("open brace", saying("\"{path\""), "2:21 ", "needs a name");
    row("language", saying("{\"english\": \"x\"}"), "2:22 ", "expected a language");
    row("no text", saying("5"), "2:21 ", "expected a text");
    row("unknown step", repairing("{\"delete\": \"/x\"}"), "2:2 ", "expected a step: one of set,");
    row("unknown format",
        repairing("{\"set\": \"/x\", \"format\": \"toml\", \"key\": \"k\", \"value\": \"v\"}"),
        "2:26 ", "expected one of ini,");
    row("limit",
        "{\"id\": \"a\", \"title\": \"T\", \"look\": {\"file\": \"/x\"}, \"finding\": {\"text\": "
        "\"F\"},\n\"limit\": \"1h\"}",
        "2:10 ", "expected a time from");
    row("column of characters", "{\"id\": \"\xc3\xbc\xc3\xbc\", \"tile\": 1}", "1:14 ",
        "unknown name");
    row("control character", looking("{\"file\": \"/x\\u0000y\"}"), "2:18 ",
        "without control characters");
}

void TestCheckReader::mistakesHaveTheirPlace()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, place);
    QFETCH(QString, words);
    const CheckFile file = read(content);
    QVERIFY(file.checks.isEmpty());
    const QString mistake = firstMistake(file);
    QVERIFY2(mistake != QLatin1String("none") && mistake.startsWith(place) &&
                 mistake.contains(words),
             qPrintable(mistake));
}

void TestCheckReader::rightFilesHaveNoMistake_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("any") << looking(
        R"({"any": [{"file": "/x", "exists": true}, {"not": {"process": "y", "running": true}}]})");
    QTest::newRow("list of comparisons")
        << looking(R"({"file": "/x", "owner": ["root", "$USER"]})");
    QTest::newRow("several comparisons")
        << looking(R"({"file": "/x", "size": {"over": "1 KiB", "atMost": 20000}})");
    QTest::newRow("fallback") << looking(R"({"file": "${XDG_X:-$HOME/x}/y"})");
    QTest::newRow("values before") << looking(
        R"({"all": [{"file": "/x", "as": "first"}, {"file": "{first.path}.old", "exists": true}]})");
    QTest::newRow("no argument") << looking(R"({"machineMemory": true, "used": {"over": 5}})");
    QTest::newRow("literal brace") << saying("\"{{path} is {path}, $5\"");
    QTest::newRow("step") << repairing(R"({"rights": "{path}", "owner": "$USER", "mode": "u+rw"})");
    QTest::newRow("disabled") << QByteArray(R"({"id": "a.b", "disabled": true})");
    QTest::newRow("several") << "{\"checks\": [" + saying("\"x\"") + "]}";
}

void TestCheckReader::rightFilesHaveNoMistake()
{
    QFETCH(QByteArray, content);
    const CheckFile file = read(content);
    QCOMPARE(firstMistake(file), QStringLiteral("none"));
    QCOMPARE(file.checks.size(), 1);
}

void TestCheckReader::aTenLineCheckIsRead()
{
    const CheckFile file = read(R"({
    "id": "profile.large",
    "title": { "en": "The profile is small", "zh_CN": "配置很小" },
    "limit": "500ms",
    "look": { "file": "$HOME/.config/x/*.xcu", "size": { "over": "20 MiB" } },
    "finding": { "state": "bad", "text": { "en": "{path} has {size}.", "zh": "{path} 有 {size}。" } },
    "repairs": [{ "id": "aside", "title": "Start afresh", "steps": [{ "aside": "{path}" }] }]
})");
    QCOMPARE(firstMistake(file), QStringLiteral("none"));
    const CheckDefinition &check = file.checks.first();
    QCOMPARE(check.limit.count(), 500);
    QCOMPARE(check.state, State::Bad);
    QCOMPARE(check.repairs.first().steps.first().arguments.value(QStringLiteral("aside")).first(),
             QStringLiteral("{path}"));
}

void TestCheckReader::textsAreChosenByLocale()
{
    const LocalText text{{{QStringLiteral("en"), QStringLiteral("e")},
                          {QStringLiteral("zh"), QStringLiteral("z")},
                          {QStringLiteral("zh_TW"), QStringLiteral("t")}}};
    QCOMPARE(text.inLanguage(QStringLiteral("zh_CN.UTF-8")), QStringLiteral("z"));
    QCOMPARE(text.inLanguage(QStringLiteral("zh-TW")), QStringLiteral("t"));
    QCOMPARE(text.inLanguage(QStringLiteral("de_DE@euro")), QStringLiteral("e"));
    QCOMPARE(text.inLanguage(QString()), QStringLiteral("e"));
    const LocalText shipped{{{QStringLiteral("en"), QStringLiteral("e")},
                             {QStringLiteral("zh_CN"), QStringLiteral("c")}}};
    QCOMPARE(shipped.inLanguage(QStringLiteral("zh")), QStringLiteral("c"));
    QCOMPARE(shipped.inLanguage(QStringLiteral("zh_HK.UTF-8")), QStringLiteral("c"));
    QCOMPARE(shipped.inLanguage(QStringLiteral("z")), QStringLiteral("e"));
}

void TestCheckReader::severalMistakesAreAllReported()
{
    const CheckFile file = read("{\"id\": \"A\", \"look\": {\"file\": 5}}");
    QCOMPARE(file.mistakes.size(), 4);
}

/// A look's probe is found by its name, so no parameter or value may be called like one.
void TestCheckReader::kindsHaveNamesOfTheirOwn()
{
    QVERIFY(probeKinds().size() >= 25);
    QVERIFY(stepKinds().size() >= 10);
    QSet<QString> names;
    for (const ProbeKind *kind : probeKinds()) {
        QVERIFY2(!names.contains(QLatin1String(kind->name)), kind->name);
        names.insert(QLatin1String(kind->name));
        QCOMPARE(kind->parameters.begin()->name, kind->name);
        for (const Parameter &parameter : kind->parameters) {
            const ProbeKind *other = probeKindNamed(QLatin1String(parameter.name));
            QVERIFY2(!other || other == kind, parameter.name);
        }
        for (const ProbeValue &value : kind->values)
            QVERIFY2(!probeKindNamed(QLatin1String(value.name)), value.name);
    }
    for (const StepKind *kind : stepKinds()) {
        QCOMPARE(kind->parameters.begin()->name, kind->name);
        for (const Parameter &parameter : kind->parameters) {
            const StepKind *other = stepKindNamed(QLatin1String(parameter.name));
            QVERIFY2(!other || other == kind, parameter.name);
        }
    }
}

void TestCheckReader::hostileFilesCostLittle_data()
{
    QTest::addColumn<QByteArray>("content");
    constexpr int half = 500 * 1024;
    QTest::newRow("64 MiB") << QByteArray(64 * 1024 * 1024, '[');
    QTest::newRow("deep") << QByteArray(half, '[');
    QTest::newRow("deep objects") << QByteArray("{\"a\":").repeated(half / 5);
    QTest::newRow("many values") << "[" + QByteArray("0,").repeated(half - 10) + "0]";
    QTest::newRow("many names") << looking("{" + QByteArray("\"all\":[],").repeated(half / 10) +
                                           "}");
    QTest::newRow("one long text") << saying("\"" + QByteArray(half, 'a') + "\"");
    QTest::newRow("many braces") << saying("\"" + QByteArray("{path}").repeated(half / 6) + "\"");
    QTest::newRow("open braces") << saying("\"" + QByteArray(half, '{') + "\"");
    QTest::newRow("many checks") << "{\"checks\": [" + QByteArray("{},").repeated(half / 3) +
                                        "{}]}";
    QTest::newRow("long names") << looking("{\"" + QByteArray(half, 'a') + "\": 1}");
    QTest::newRow("nested repeats")
        << looking(R"({"line": "/x", "pattern": "((((a{1,999}){1,999}){1,999}){1,999}){1,999}"})");
    QTest::newRow("name that is not UTF-8") << QByteArray("{\"\xff\": 1}");
    QTest::newRow("half a character") << QByteArray(R"({"\udc00": 1})");
    QTest::newRow("not UTF-8") << looking("{\"file\": \"/\xff\xfe\"}").replace("a.b", "\xc0\x80");
}

void TestCheckReader::hostileFilesCostLittle()
{
    QFETCH(QByteArray, content);
    // Of this process: how busy the machine is does not count.
    const std::clock_t before = std::clock();
    const CheckFile file = read(content);
    const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    QVERIFY(!file.mistakes.isEmpty());
    QVERIFY(file.mistakes.size() <= 100);
    QVERIFY2(seconds < 10, qPrintable(QString::number(seconds)));
}

void TestCheckReader::aPipeIsNoCheckFile()
{
    const QTemporaryDir directory;
    const QString pipe = directory.filePath(QStringLiteral("x.json"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(firstMistake(readCheckFile(pipe)).contains(QLatin1String("not a regular file")));
}

QTEST_GUILESS_MAIN(TestCheckReader)
#include "tst_checkreader.moc"
