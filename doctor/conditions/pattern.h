#pragma once

#include <QRegularExpression>
#include <QString>

#include <optional>

namespace doctor {

/// What matching a pattern has given.
struct PatternMatch
{
    bool hasMatched = false;
    /// The pattern needs too many steps for this text.
    bool hasGivenUp = false;
    QStringList captured;
};

/// A regular expression (PCRE) that gives up after a bounded number of steps.
class Pattern
{
public:
    /// Why @p text cannot be used as a pattern; empty if it can.
    static QString problemOf(const QString &text);

    explicit Pattern(const QString &text);

    PatternMatch match(const QString &subject) const;
    QString replaced(const QString &subject, const QString &replacement) const;

    /// A text without which nothing matches; empty if none is known.
    QString neededText() const;

private:
    QString m_text;
    QRegularExpression m_expression;
};

} // namespace doctor
