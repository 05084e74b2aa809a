#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

#include "host/jsonhelper.h"
#include "tests/support/shell/headlesstest.h"

using JsonHelper::convertJsonCppToQJson;
using JsonHelper::convertQJsonToJsonCpp;

/// Conversion between Qt's JSON classes and Json::Value.
class JsonHelperTest : public QObject
{
    Q_OBJECT

private slots:
    void everyKindOfValueSurvivesTheWayThereAndBack_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("null") << QJsonValue();
        QTest::newRow("true") << QJsonValue(true);
        QTest::newRow("false") << QJsonValue(false);
        QTest::newRow("text") << QJsonValue(QStringLiteral("a"));
        QTest::newRow("empty text") << QJsonValue(QString());
        QTest::newRow("Chinese and beyond the first plane")
            << QJsonValue(QString::fromUtf8("\xe6\x96\x87\xf0\x9f\x98\x80"));
        QTest::newRow("zero in a text") << QJsonValue(QString(QLatin1String("a\0b", 3)));
        QTest::newRow("controls and quotes") << QJsonValue(QStringLiteral("\"\\\n\t\x1f\x7f</"));
        QTest::newRow("zero") << QJsonValue(0);
        QTest::newRow("negative") << QJsonValue(-5);
        QTest::newRow("fraction") << QJsonValue(0.1);
        QTest::newRow("beyond 32 bits") << QJsonValue(4294967296.0);
        QTest::newRow("largest exact") << QJsonValue(9007199254740992.0);
        QTest::newRow("smallest exact") << QJsonValue(-9007199254740992.0);
        QTest::newRow("beyond 64 bits") << QJsonValue(1e30);
        QTest::newRow("largest") << QJsonValue(std::numeric_limits<double>::max());
        QTest::newRow("tiny") << QJsonValue(5e-324);
        QTest::newRow("empty array") << QJsonValue(QJsonArray());
        QTest::newRow("empty object") << QJsonValue(QJsonObject());
        QTest::newRow("mixed array")
            << QJsonValue(QJsonArray{1, QStringLiteral("a"), QJsonValue(), QJsonArray{true}});
        QTest::newRow("empty and odd keys")
            << QJsonValue(QJsonObject{{QString(), 1},
                                      {QStringLiteral("a.b[c]"), 2},
                                      {QString(QLatin1String("k\0l", 3)), 3},
                                      {QStringLiteral("\u6587"), 4}});
        QTest::newRow("megabyte") << QJsonValue(QString(1 << 20, QLatin1Char('x')));
    }

    void everyKindOfValueSurvivesTheWayThereAndBack()
    {
        QFETCH(QJsonValue, value);
        QCOMPARE(convertJsonCppToQJson(convertQJsonToJsonCpp(value)), value);
    }

    void deepNestingSurvives()
    {
        QJsonValue nested(QStringLiteral("inmost"));
        for (int depth = 0; depth < 500; ++depth)
            nested = depth % 2 ? QJsonValue(QJsonArray{nested})
                               : QJsonValue(QJsonObject{{QStringLiteral("in"), nested}});
        QCOMPARE(convertJsonCppToQJson(convertQJsonToJsonCpp(nested)), nested);
    }

    void objectsAndArraysConvertAsSuch()
    {
        const QJsonObject object{{QStringLiteral("a"), 1}};
        const QJsonArray array{object};
        QCOMPARE(convertQJsonToJsonCpp(object).type(), Json::objectValue);
        QCOMPARE(convertQJsonToJsonCpp(array).type(), Json::arrayValue);
        QCOMPARE(convertQJsonToJsonCpp(array)[0]["a"].asInt(), 1);
    }

    void wholeNumbersBecomeIntegers()
    {
        QCOMPARE(convertQJsonToJsonCpp(QJsonValue(5.0)).type(), Json::intValue);
        QCOMPARE(convertQJsonToJsonCpp(QJsonValue(5.5)).type(), Json::realValue);
        QCOMPARE(convertQJsonToJsonCpp(QJsonValue(1e300)).type(), Json::realValue);
    }

    void unsignedNumbersBecomeNumbers()
    {
        const Json::Value largest(std::numeric_limits<Json::UInt64>::max());
        QCOMPARE(convertJsonCppToQJson(largest), QJsonValue(18446744073709551615.0));
    }

    void infiniteNumbersBecomeNull()
    {
        for (const double number :
             {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
              std::numeric_limits<double>::quiet_NaN()})
            QVERIFY(convertQJsonToJsonCpp(QJsonValue(number)).isNull());
    }

    void anUndefinedValueBecomesNull()
    {
        QVERIFY(convertQJsonToJsonCpp(QJsonValue(QJsonValue::Undefined)).isNull());
    }

    void aLoneSurrogateIsReplaced()
    {
        const QString lone = QStringLiteral("a") + QChar(0xd800) + QStringLiteral("b");
        const QJsonValue back = convertJsonCppToQJson(convertQJsonToJsonCpp(QJsonValue(lone)));
        QCOMPARE(back.toString().size(), 3);
        QVERIFY(!back.toString().at(1).isSurrogate());
    }

    void bytesThatAreNotUtf8AreReplaced()
    {
        const QString text = convertJsonCppToQJson(Json::Value(std::string("a\xff\xfe"
                                                                           "b")))
                                 .toString();
        QVERIFY(text.startsWith(QLatin1Char('a')) && text.endsWith(QLatin1Char('b')));
        QVERIFY(text.contains(QChar(QChar::ReplacementCharacter)));
    }
};

HEADLESS_TEST_MAIN(JsonHelperTest)
#include "tst_jsonhelper.moc"
