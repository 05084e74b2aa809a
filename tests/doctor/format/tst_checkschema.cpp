#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include "doctor/format/checkreader.h"
#include "doctor/format/schema.h"

using namespace doctor;

namespace {

QByteArray contentOf(const char *path)
{
    QFile file(QStringLiteral(TEST_DATA_DIR "/../") + QLatin1String(path));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", path);
    return file.readAll();
}

/// What is wrong with each of the samples in a file; empty for one without a mistake.
QStringList mistakesIn(const char *path)
{
    QStringList mistakes;
    const QJsonArray samples = QJsonDocument::fromJson(contentOf(path)).array();
    for (const QJsonValue &sample : samples) {
        const QJsonDocument document =
            sample.isArray() ? QJsonDocument(sample.toArray()) : QJsonDocument(sample.toObject());
        const CheckFile file = readChecks(document.toJson(), QStringLiteral("sample"));
        mistakes.append(file.mistakes.isEmpty() ? QString() : file.mistakes.first().message);
    }
    return mistakes;
}

} // namespace

class TestCheckSchema : public QObject
{
    Q_OBJECT

private slots:
    void theSchemaIsThatOfTheTables();
    void theSchemaFitsTheFiles();
    void theReaderAgreesWithTheSchema();
    void theGuideNamesEverything();
    void theGuidesExamplesAreRight();
};

/// With UPDATE_CHECK_SCHEMA=1 the test writes the schema instead.
void TestCheckSchema::theSchemaIsThatOfTheTables()
{
    const QByteArray schema = QJsonDocument(checkSchema()).toJson();
    if (qEnvironmentVariableIsSet("UPDATE_CHECK_SCHEMA")) {
        QFile file(QStringLiteral(TEST_DATA_DIR "/../docs/check.schema.json"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(schema) == schema.size());
    }
    QVERIFY2(contentOf("docs/check.schema.json") == schema,
             "run this test with UPDATE_CHECK_SCHEMA=1 to write docs/check.schema.json again");
}

void TestCheckSchema::theSchemaFitsTheFiles()
{
    QProcess validator;
    validator.start(QStringLiteral("python3"),
                    {QStringLiteral(TEST_DATA_DIR "/doctor/format/checkschema.py")});
    QVERIFY2(validator.waitForFinished(60000), "the validator does not end");
    QVERIFY2(validator.exitStatus() == QProcess::NormalExit && validator.exitCode() == 0,
             validator.readAllStandardError().constData());
}

void TestCheckSchema::theReaderAgreesWithTheSchema()
{
    const QStringList right = mistakesIn("tests/doctor/format/samples/right.json");
    QVERIFY2(right.count(QString()) == right.size(), qPrintable(right.join(QLatin1Char('\n'))));
    const QStringList wrong = mistakesIn("tests/doctor/format/samples/wrong.json");
    QCOMPARE(wrong.indexOf(QString()), -1);
    QVERIFY(wrong.size() > 20);
}

void TestCheckSchema::theGuideNamesEverything()
{
    const QByteArray guide = contentOf("docs/checks.md");
    const auto isNamed = [&guide](const char *name) {
        return guide.contains('`' + QByteArray(name) + '`');
    };
    for (const ProbeKind *kind : probeKinds()) {
        for (const Parameter &parameter : kind->parameters)
            QVERIFY2(isNamed(parameter.name), parameter.name);
        for (const ProbeValue &value : kind->values)
            QVERIFY2(isNamed(value.name), value.name);
    }
    for (const StepKind *kind : stepKinds()) {
        for (const Parameter &parameter : kind->parameters)
            QVERIFY2(isNamed(parameter.name), parameter.name);
    }
}

void TestCheckSchema::theGuidesExamplesAreRight()
{
    static const QRegularExpression example(QStringLiteral("^```json\\n(.*?)^```"),
                                            QRegularExpression::MultilineOption |
                                                QRegularExpression::DotMatchesEverythingOption);
    int count = 0;
    QRegularExpressionMatchIterator matches =
        example.globalMatch(QString::fromUtf8(contentOf("docs/checks.md")));
    while (matches.hasNext()) {
        const CheckFile file =
            readChecks(matches.next().captured(1).toUtf8(), QStringLiteral("docs/checks.md"));
        QVERIFY2(file.mistakes.isEmpty(), qPrintable(file.mistakes.value(0).message));
        ++count;
    }
    QCOMPARE(count, 6);
}

QTEST_GUILESS_MAIN(TestCheckSchema)
#include "tst_checkschema.moc"
