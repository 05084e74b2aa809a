#include "doctor/format/schema.h"

#include <QJsonArray>

#include <array>

#include "doctor/conditions/condition.h"
#include "doctor/probes/probe.h"
#include "doctor/repairs/step.h"
#include "suites/description.h"

namespace doctor {

namespace {

struct NamedType
{
    ValueType type;
    const char *name;
};
constexpr std::array<NamedType, 7> valueTypes{{
    {ValueType::Text, "text"},
    {ValueType::Number, "number"},
    {ValueType::Flag, "flag"},
    {ValueType::Size, "size"},
    {ValueType::Age, "age"},
    {ValueType::Version, "version"},
    {ValueType::Mode, "mode"},
}};

QJsonObject typed(const char *type)
{
    return {{QStringLiteral("type"), QLatin1String(type)}};
}

QJsonObject reference(const QString &name)
{
    return {{QStringLiteral("$ref"), QStringLiteral("#/definitions/") + name}};
}

QJsonObject oneOf(const QJsonArray &schemas)
{
    return {{QStringLiteral("anyOf"), schemas}};
}

QJsonObject listOf(const QJsonObject &item, int most)
{
    return {{QStringLiteral("type"), QStringLiteral("array")},
            {QStringLiteral("items"), item},
            {QStringLiteral("minItems"), 1},
            {QStringLiteral("maxItems"), most}};
}

QJsonObject object(const QJsonObject &properties, const QStringList &required)
{
    QJsonObject schema{{QStringLiteral("type"), QStringLiteral("object")},
                       {QStringLiteral("properties"), properties},
                       {QStringLiteral("additionalProperties"), false}};
    if (!required.isEmpty())
        schema.insert(QStringLiteral("required"), QJsonArray::fromStringList(required));
    return schema;
}

QJsonObject words(const QStringList &known)
{
    return {{QStringLiteral("enum"), QJsonArray::fromStringList(known)}};
}

QJsonObject matching(const char *pattern)
{
    return {{QStringLiteral("type"), QStringLiteral("string")},
            {QStringLiteral("pattern"), QLatin1String(pattern)}};
}

QJsonObject schemaOf(const Parameter &parameter)
{
    constexpr int mostItems = 200;
    switch (parameter.type) {
    case ParameterType::Number:
        return oneOf({typed("number"), typed("string")});
    case ParameterType::Flag:
        return typed("boolean");
    case ParameterType::Nothing:
        return {{QStringLiteral("const"), true}};
    case ParameterType::Texts:
        return oneOf({typed("string"), listOf(typed("string"), mostItems)});
    case ParameterType::Path:
        return matching("^[/$\\{]");
    case ParameterType::PathPattern:
        return oneOf({matching("^[/$\\{]"), listOf(matching("^[/$\\{]"), mostItems)});
    case ParameterType::Word:
        return words(QString::fromLatin1(parameter.words).split(QLatin1Char('|')));
    default:
        return typed("string");
    }
}

QString conditionName(ValueType type)
{
    return QLatin1String(valueTypes[static_cast<std::size_t>(type)].name) +
           QStringLiteral("Condition");
}

QJsonObject conditionSchema(ValueType type)
{
    if (type == ValueType::Flag)
        return typed("boolean");
    const QJsonObject operand{
        {QStringLiteral("type"), QJsonArray{QStringLiteral("string"), QStringLiteral("number")}}};
    const QJsonObject operands = oneOf({operand, listOf(operand, 200)});
    QJsonObject comparisons;
    for (const Comparison comparison : comparisonsFor(type))
        comparisons.insert(comparisonName(comparison), operands);
    QJsonObject several = object(comparisons, {});
    several.insert(QStringLiteral("minProperties"), 1);
    return oneOf({operand, listOf(operand, 200), several});
}

template<class Kind>
QStringList addParameters(const Kind &kind, QJsonObject &properties)
{
    QStringList required;
    for (const Parameter &parameter : kind.parameters) {
        properties.insert(QLatin1String(parameter.name), schemaOf(parameter));
        if (parameter.isRequired)
            required.append(QLatin1String(parameter.name));
    }
    return required;
}

QJsonObject probeSchema(const ProbeKind &kind)
{
    QJsonObject properties{{QStringLiteral("as"), matching("^[a-z][A-Za-z0-9]{0,30}$")}};
    for (const ProbeValue &value : kind.values)
        properties.insert(QLatin1String(value.name), reference(conditionName(value.type)));
    const QStringList required = addParameters(kind, properties);
    return object(properties, required);
}

QJsonObject lookSchema()
{
    const QJsonObject look = reference(QStringLiteral("look"));
    QJsonArray kinds;
    for (const char *joined : {"all", "any"}) {
        const QString name = QLatin1String(joined);
        kinds.append(object({{name, listOf(look, 50)}}, {name}));
    }
    kinds.append(object({{QStringLiteral("not"), look}}, {QStringLiteral("not")}));
    for (const ProbeKind *kind : probeKinds())
        kinds.append(probeSchema(*kind));
    return oneOf(kinds);
}

QJsonObject stepSchema()
{
    QJsonArray kinds;
    for (const StepKind *kind : stepKinds()) {
        QJsonObject properties;
        const QStringList required = addParameters(*kind, properties);
        kinds.append(object(properties, required));
    }
    return oneOf(kinds);
}

QJsonObject localTextSchema()
{
    QJsonObject languages = typed("object");
    languages.insert(QStringLiteral("minProperties"), 1);
    languages.insert(QStringLiteral("propertyNames"),
                     matching("^[a-z]{2,3}(_[A-Z]{2}|_[A-Z][a-z]{3})?$"));
    languages.insert(QStringLiteral("additionalProperties"), matching("."));
    return oneOf({matching("."), languages});
}

QJsonObject idSchema()
{
    return matching("^[a-z0-9]+([.-][a-z0-9]+)*$");
}

QJsonObject repairSchema()
{
    return object({{QStringLiteral("id"), idSchema()},
                   {QStringLiteral("title"), reference(QStringLiteral("localText"))},
                   {QStringLiteral("when"), reference(QStringLiteral("look"))},
                   {QStringLiteral("steps"), listOf(reference(QStringLiteral("step")), 50)}},
                  {QStringLiteral("id"), QStringLiteral("title"), QStringLiteral("steps")});
}

QJsonObject findingSchema()
{
    return object(
        {{QStringLiteral("state"),
          words({QStringLiteral("bad"), QStringLiteral("warning"), QStringLiteral("note")})},
         {QStringLiteral("text"), reference(QStringLiteral("localText"))}},
        {QStringLiteral("text")});
}

QJsonObject checkObjectSchema()
{
    const QJsonObject text = reference(QStringLiteral("localText"));
    const QJsonObject look = reference(QStringLiteral("look"));
    QJsonObject repairs = listOf(reference(QStringLiteral("repair")), 20);
    repairs.remove(QStringLiteral("minItems"));
    QJsonObject schema =
        object({{QStringLiteral("$schema"), typed("string")},
                {QStringLiteral("id"), idSchema()},
                {QStringLiteral("title"), text},
                {QStringLiteral("about"), text},
                {QStringLiteral("cost"), words({QStringLiteral("quick"), QStringLiteral("slow")})},
                {QStringLiteral("limit"), typed("string")},
                {QStringLiteral("disabled"), typed("boolean")},
                {QStringLiteral("suite"), words(suites::descriptionIds())},
                {QStringLiteral("when"), look},
                {QStringLiteral("skipped"), text},
                {QStringLiteral("look"), look},
                {QStringLiteral("finding"), reference(QStringLiteral("finding"))},
                {QStringLiteral("repairs"), repairs}},
               {QStringLiteral("id")});
    // A check that only switches another one off needs no more than its id.
    const QJsonObject switchedOff{
        {QStringLiteral("properties"),
         QJsonObject{{QStringLiteral("disabled"), QJsonObject{{QStringLiteral("const"), true}}}}},
        {QStringLiteral("required"), QJsonArray{QStringLiteral("disabled")}}};
    const QJsonObject whole{
        {QStringLiteral("required"),
         QJsonArray{QStringLiteral("title"), QStringLiteral("look"), QStringLiteral("finding")}}};
    schema.insert(QStringLiteral("anyOf"), QJsonArray{switchedOff, whole});
    return schema;
}

} // namespace

QJsonObject checkSchema()
{
    QJsonObject definitions{{QStringLiteral("check"), checkObjectSchema()},
                            {QStringLiteral("finding"), findingSchema()},
                            {QStringLiteral("localText"), localTextSchema()},
                            {QStringLiteral("look"), lookSchema()},
                            {QStringLiteral("repair"), repairSchema()},
                            {QStringLiteral("step"), stepSchema()}};
    for (const NamedType &type : valueTypes)
        definitions.insert(conditionName(type.type), conditionSchema(type.type));
    const QJsonObject check = reference(QStringLiteral("check"));
    const QJsonObject several = object({{QStringLiteral("$schema"), typed("string")},
                                        {QStringLiteral("suite"), words(suites::descriptionIds())},
                                        {QStringLiteral("checks"), listOf(check, 500)}},
                                       {QStringLiteral("checks")});
    QJsonObject schema = oneOf({check, several});
    schema.insert(QStringLiteral("$schema"),
                  QStringLiteral("http://json-schema.org/draft-07/schema#"));
    schema.insert(QStringLiteral("title"), QStringLiteral("Checks of the office assistant"));
    schema.insert(QStringLiteral("definitions"), definitions);
    return schema;
}

} // namespace doctor
