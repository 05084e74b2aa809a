#include "doctor/format/lookreader.h"

#include <QRegularExpression>

#include "doctor/format/fieldreader.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr int mostParts = 50;
constexpr int mostItems = 200;
constexpr int longestOperand = 2000;

constexpr char allName[] = "all";
constexpr char anyName[] = "any";
constexpr char notName[] = "not";
constexpr char asName[] = "as";

QString typeName(ParameterType type)
{
    switch (type) {
    case ParameterType::Number:
        return texts::tr("a number");
    case ParameterType::Flag:
        return texts::tr("true or false");
    case ParameterType::Nothing:
        return QStringLiteral("true");
    case ParameterType::Texts:
        return texts::tr("a text or a list of texts");
    case ParameterType::Path:
    case ParameterType::PathPattern:
        return texts::tr("a path");
    default:
        return texts::tr("a text");
    }
}

bool hasType(const JsonNode &node, ParameterType type)
{
    switch (type) {
    case ParameterType::Number:
        return node.isNumber() || node.isText();
    case ParameterType::Flag:
        return node.isFlag();
    case ParameterType::Nothing:
        return node.isFlag() && node.text() == QLatin1String("true");
    default:
        return node.isText();
    }
}

QStringList readArgument(const JsonNode &node, const Parameter &parameter,
                         const QSet<QString> &values)
{
    QVector<JsonNode> nodes{node};
    const bool mayBeList =
        parameter.type == ParameterType::Texts || parameter.type == ParameterType::PathPattern;
    if (node.isList() && mayBeList)
        nodes = node.items().mid(0, mostItems);
    if (nodes.isEmpty())
        node.report(texts::tr("expected at least one text"));
    QStringList texts;
    for (const JsonNode &item : qAsConst(nodes)) {
        const QString text = item.text().left(longestOperand);
        const QString problem = hasType(item, parameter.type)
                                    ? parameterProblem(parameter, text)
                                    : texts::tr("expected %1").arg(typeName(parameter.type));
        if (!problem.isEmpty())
            item.report(problem);
        else if (parameter.type != ParameterType::Pattern)
            checkPlaceholders(item, text, values);
        texts.append(text);
    }
    return texts;
}

QStringList readOperands(const JsonNode &node, ValueType type, Comparison comparison,
                         const QSet<QString> &values)
{
    QStringList operands;
    const QVector<JsonNode> items =
        node.isList() ? node.items().mid(0, mostItems) : QVector<JsonNode>{node};
    if (items.isEmpty())
        node.report(texts::tr("expected at least one value to compare with"));
    for (const JsonNode &item : items) {
        const QString operand = item.text();
        const bool isPattern =
            comparison == Comparison::Matches || comparison == Comparison::MatchesNot;
        if (item.isList() || item.isObject() || (item.isFlag() != (type == ValueType::Flag))) {
            item.report(type == ValueType::Flag ? texts::tr("expected true or false")
                                                : texts::tr("expected a text or a number"));
        } else if (operand.size() > longestOperand) {
            item.report(texts::tr("expected at most %1 characters").arg(longestOperand));
        } else {
            const QString problem = operandProblem(operand, type, comparison);
            if (!problem.isEmpty())
                item.report(problem);
            else if (!isPattern)
                checkPlaceholders(item, operand, values);
        }
        operands.append(operand);
    }
    return operands;
}

Condition readCondition(const JsonNode &node, ValueType type, const QSet<QString> &values)
{
    if (!node.isObject())
        return {{{Comparison::Is, readOperands(node, type, Comparison::Is, values)}}};
    QStringList known;
    for (const Comparison comparison : comparisonsFor(type))
        known.append(comparisonName(comparison));
    reportUnknown(node, known, texts::tr("this comparison"));
    if (node.names().isEmpty())
        node.report(texts::tr("expected a comparison: %1").arg(known.join(QStringLiteral(", "))));
    Condition condition;
    for (const QString &name : qAsConst(known)) {
        const std::optional<JsonNode> operands = node.member(name);
        const Comparison comparison = *comparisonNamed(name);
        if (operands)
            condition.tests.append({comparison, readOperands(*operands, type, comparison, values)});
    }
    return condition;
}

QStringList namesOf(const ProbeKind &kind)
{
    QStringList names{QLatin1String(asName)};
    for (const Parameter &parameter : kind.parameters)
        names.append(QLatin1String(parameter.name));
    for (const ProbeValue &value : kind.values) {
        if (!names.contains(QLatin1String(value.name)))
            names.append(QLatin1String(value.name));
    }
    return names;
}

bool isParameter(const ProbeKind &kind, const QString &name)
{
    for (const Parameter &parameter : kind.parameters) {
        if (name == QLatin1String(parameter.name))
            return true;
    }
    return false;
}

/// The name that a probe's values get in front of theirs.
QString readPrefix(const JsonNode &node)
{
    static const QRegularExpression form(QStringLiteral("^[a-z][A-Za-z0-9]{0,30}$"));
    const std::optional<JsonNode> as = node.member(asName);
    if (!as)
        return {};
    const QString name = as->text();
    if (!as->isText() || !form.match(name).hasMatch())
        as->report(texts::tr("expected a name such as \"target\""));
    return name + QLatin1Char('.');
}

Look readProbe(const JsonNode &node, const ProbeKind &kind, QSet<QString> &values)
{
    Look look;
    look.probe = &kind;
    look.prefix = readPrefix(node);
    reportUnknown(node, namesOf(kind), texts::tr("the probe \"%1\"").arg(QLatin1String(kind.name)));
    look.arguments = readArguments(node, kind.parameters, values);
    for (const ProbeValue &value : kind.values) {
        const QString name = QLatin1String(value.name);
        const std::optional<JsonNode> condition =
            isParameter(kind, name) ? std::nullopt : node.member(name);
        if (condition)
            look.expected.append({name, readCondition(*condition, value.type, values)});
    }
    for (const ProbeValue &value : kind.values)
        values.insert(look.prefix + QLatin1String(value.name));
    return look;
}

Look readJoined(const JsonNode &node, const char *name, Look::Kind kind, QSet<QString> &values)
{
    Look look;
    look.kind = kind;
    reportUnknown(node, {QLatin1String(name)}, texts::tr("this object"));
    const JsonNode parts = *node.member(name);
    const QVector<JsonNode> items = parts.items();
    if (items.isEmpty() || items.size() > mostParts)
        parts.report(texts::tr("expected a list of 1 to %1 looks").arg(mostParts));
    QSet<QString> seen = values;
    for (const JsonNode &item : items.mid(0, mostParts)) {
        QSet<QString> usable = kind == Look::Kind::All ? seen : values;
        look.parts.append(readLook(item, usable));
        seen.unite(usable);
    }
    values = seen;
    return look;
}

const ProbeKind *kindOf(const JsonNode &node)
{
    for (const QString &name : node.names()) {
        if (const ProbeKind *kind = probeKindNamed(name))
            return kind;
    }
    return nullptr;
}

} // namespace

RawArguments readArguments(const JsonNode &object, Table<Parameter> parameters,
                           const QSet<QString> &values)
{
    RawArguments arguments;
    for (const Parameter &parameter : parameters) {
        const QString name = QLatin1String(parameter.name);
        const std::optional<JsonNode> node = object.member(name);
        if (node)
            arguments.insert(name, readArgument(*node, parameter, values));
        else if (parameter.isRequired)
            object.report(texts::tr("expected \"%1\" in this object").arg(name));
    }
    return arguments;
}

Look readLook(const JsonNode &node, QSet<QString> &values)
{
    if (!isObjectOrReport(node, texts::tr("a probe, \"all\", \"any\" or \"not\"")))
        return {};
    if (node.member(allName))
        return readJoined(node, allName, Look::Kind::All, values);
    if (node.member(anyName))
        return readJoined(node, anyName, Look::Kind::Any, values);
    if (const std::optional<JsonNode> part = node.member(notName)) {
        reportUnknown(node, {QLatin1String(notName)}, texts::tr("this object"));
        Look look;
        look.kind = Look::Kind::Not;
        QSet<QString> usable = values;
        look.parts.append(readLook(*part, usable));
        return look;
    }
    if (const ProbeKind *kind = kindOf(node))
        return readProbe(node, *kind, values);
    QStringList known{QLatin1String(allName), QLatin1String(anyName), QLatin1String(notName)};
    for (const ProbeKind *kind : probeKinds())
        known.append(QLatin1String(kind->name));
    const QString hint =
        node.names().isEmpty() ? QString() : suggestion(node.names().first(), known);
    node.report(
        texts::tr("expected a probe: one of %1%2").arg(known.join(QStringLiteral(", ")), hint));
    return {};
}

} // namespace doctor
