#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

#include "doctor/conditions/texttemplate.h"
#include "doctor/conditions/value.h"

namespace doctor {

enum class Comparison {
    Is,
    Not,
    Over,
    Under,
    AtLeast,
    AtMost,
    Matches,
    MatchesNot,
    Has,
    Lacks
};

/// The name of a comparison in check files.
QString comparisonName(Comparison comparison);
std::optional<Comparison> comparisonNamed(const QString &name);
/// Those that can be said of a type, in the order of their names' table.
QVector<Comparison> comparisonsFor(ValueType type);

/// What must hold of one value: all of the tests, each for one of its operands. "Not" and
/// "MatchesNot" must hold for all of theirs.
struct Condition
{
    struct Test
    {
        Comparison comparison = Comparison::Is;
        /// With placeholders.
        QStringList operands;
    };
    QVector<Test> tests;
};

/// Why @p operand cannot be compared with a value of @p type; empty if it can, or has placeholders.
QString operandProblem(const QString &operand, ValueType type, Comparison comparison);

/// Whether a condition holds, or why that cannot be told.
struct Judgement
{
    bool holds = false;
    QString problem;
};

Judgement judge(const Condition &condition, const Value &value,
                const std::function<Expansion(const QString &)> &expand);

} // namespace doctor
