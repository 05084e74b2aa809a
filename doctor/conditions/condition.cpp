#include "doctor/conditions/condition.h"

#include <algorithm>
#include <array>

#include "doctor/conditions/pattern.h"
#include "doctor/conditions/units.h"
#include "texts/texts.h"

namespace doctor {

namespace {

struct Named
{
    Comparison comparison;
    const char *name;
};
constexpr std::array<Named, 10> names{{
    {Comparison::Is, "is"},
    {Comparison::Not, "not"},
    {Comparison::Over, "over"},
    {Comparison::Under, "under"},
    {Comparison::AtLeast, "atLeast"},
    {Comparison::AtMost, "atMost"},
    {Comparison::Matches, "matches"},
    {Comparison::MatchesNot, "matchesNot"},
    {Comparison::Has, "has"},
    {Comparison::Lacks, "lacks"},
}};

bool isOrder(Comparison comparison)
{
    return comparison == Comparison::Over || comparison == Comparison::Under ||
           comparison == Comparison::AtLeast || comparison == Comparison::AtMost;
}

bool isPattern(Comparison comparison)
{
    return comparison == Comparison::Matches || comparison == Comparison::MatchesNot;
}

/// Those of which every operand must hold; of the others one is enough.
bool isDenial(Comparison comparison)
{
    return comparison == Comparison::Not || comparison == Comparison::MatchesNot ||
           comparison == Comparison::Lacks;
}

bool isPossible(Comparison comparison, ValueType type)
{
    const bool isEqual = comparison == Comparison::Is || comparison == Comparison::Not;
    switch (type) {
    case ValueType::Flag:
        return comparison == Comparison::Is;
    case ValueType::Text:
    case ValueType::Version:
        return true;
    case ValueType::Mode:
        return isEqual || comparison == Comparison::Has || comparison == Comparison::Lacks;
    case ValueType::Number:
    case ValueType::Size:
    case ValueType::Age:
        break;
    }
    return isEqual || isOrder(comparison);
}

std::optional<double> numberOf(const QString &operand, ValueType type)
{
    if (type == ValueType::Size)
        return sizeOf(operand);
    if (type == ValueType::Age)
        return ageOf(operand);
    if (type == ValueType::Flag) {
        if (operand == QLatin1String("true") || operand == QLatin1String("false"))
            return operand == QLatin1String("true") ? 1 : 0;
        return std::nullopt;
    }
    bool isNumber = false;
    const double number = operand.toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

bool isOrdered(int order, Comparison comparison)
{
    switch (comparison) {
    case Comparison::Over:
        return order > 0;
    case Comparison::Under:
        return order < 0;
    case Comparison::AtLeast:
        return order >= 0;
    case Comparison::AtMost:
        return order <= 0;
    case Comparison::Not:
        return order != 0;
    default:
        return order == 0;
    }
}

Judgement judgeText(const QString &text, Comparison comparison, const QString &operand,
                    ValueType type)
{
    if (isPattern(comparison)) {
        const QString problem = Pattern::problemOf(operand);
        if (!problem.isEmpty())
            return {false, problem};
        const PatternMatch match = Pattern(operand).match(text);
        if (match.hasGivenUp)
            return {false, texts::tr("the pattern \"%1\" needs too many steps").arg(operand)};
        return {match.hasMatched == (comparison == Comparison::Matches), {}};
    }
    if (comparison == Comparison::Has || comparison == Comparison::Lacks)
        return {text.contains(operand) == (comparison == Comparison::Has), {}};
    const bool asVersions = isOrder(comparison) || type == ValueType::Version;
    const int order = asVersions ? compareVersions(text, operand) : QString::compare(text, operand);
    return {isOrdered(order, comparison), {}};
}

Judgement judgeMode(unsigned mode, Comparison comparison, const QString &operand)
{
    const std::optional<ModeBits> wanted = modeOf(operand);
    if (!wanted)
        return {false, operandProblem(operand, ValueType::Mode, comparison)};
    const bool holds = comparison == Comparison::Is || comparison == Comparison::Not
                           ? mode == wanted->bits
                           : (mode & wanted->bits) == wanted->bits;
    return {holds == (comparison == Comparison::Is || comparison == Comparison::Has), {}};
}

Judgement judgeOne(const Value &value, Comparison comparison, const QString &operand)
{
    if (value.type == ValueType::Text || value.type == ValueType::Version)
        return judgeText(value.text, comparison, operand, value.type);
    if (value.type == ValueType::Mode)
        return judgeMode(static_cast<unsigned>(value.number), comparison, operand);
    const std::optional<double> number = numberOf(operand, value.type);
    if (!number)
        return {false, operandProblem(operand, value.type, comparison)};
    const int order = value.number < *number ? -1 : value.number > *number ? 1 : 0;
    return {isOrdered(order, comparison), {}};
}

QString examplesOf(ValueType type)
{
    switch (type) {
    case ValueType::Flag:
        return texts::tr("true or false");
    case ValueType::Size:
        return texts::tr("a size such as \"10 MiB\"");
    case ValueType::Age:
        return texts::tr("an age such as \"7 days\"");
    case ValueType::Mode:
        return texts::tr("a mode such as \"600\" or \"u+rw\"");
    default:
        return texts::tr("a number");
    }
}

} // namespace

QString comparisonName(Comparison comparison)
{
    return QLatin1String(names[static_cast<std::size_t>(comparison)].name);
}

std::optional<Comparison> comparisonNamed(const QString &name)
{
    for (const Named &known : names) {
        if (name == QLatin1String(known.name))
            return known.comparison;
    }
    return std::nullopt;
}

QVector<Comparison> comparisonsFor(ValueType type)
{
    QVector<Comparison> possible;
    for (const Named &known : names) {
        if (isPossible(known.comparison, type))
            possible.append(known.comparison);
    }
    return possible;
}

QString operandProblem(const QString &operand, ValueType type, Comparison comparison)
{
    if (hasPlaceholders(operand) && !isPattern(comparison))
        return templateProblem(operand);
    if (isPattern(comparison))
        return Pattern::problemOf(operand);
    if (type == ValueType::Text || type == ValueType::Version)
        return {};
    const bool isGood =
        type == ValueType::Mode ? modeOf(operand).has_value() : numberOf(operand, type).has_value();
    return isGood ? QString()
                  : texts::tr("expected %1, not \"%2\"").arg(examplesOf(type), operand.left(100));
}

Judgement judge(const Condition &condition, const Value &value,
                const std::function<Expansion(const QString &)> &expand)
{
    for (const Condition::Test &test : condition.tests) {
        const bool denial = isDenial(test.comparison);
        bool holds = denial;
        for (const QString &operand : test.operands) {
            // Braces and dollar signs have a meaning of their own in patterns.
            const Expansion text =
                isPattern(test.comparison) ? Expansion{operand, {}} : expand(operand);
            if (!text.problem.isEmpty())
                return {false, text.problem};
            Judgement one = judgeOne(value, test.comparison, text.text);
            if (!one.problem.isEmpty())
                return one;
            holds = denial ? holds && one.holds : holds || one.holds;
        }
        if (!holds)
            return {};
    }
    return {true, {}};
}

} // namespace doctor
