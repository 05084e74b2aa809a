#include "doctor/conditions/pattern.h"

#include "doctor/conditions/neededtext.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr int longestPattern = 1000;
constexpr int longestSubject = 1024 * 1024;
/// A pattern cannot raise them, as it may not begin like this itself.
constexpr char limits[] = "(*LIMIT_MATCH=100000)(*LIMIT_DEPTH=10000)(*LIMIT_HEAP=16384)(*NO_JIT)";

} // namespace

QString Pattern::problemOf(const QString &text)
{
    if (text.size() > longestPattern)
        return texts::tr("a pattern has at most %1 characters").arg(longestPattern);
    if (text.startsWith(QLatin1String("(*")))
        return texts::tr("a pattern may not begin with \"(*\"");
    const Pattern pattern(text);
    return pattern.m_expression.isValid() ? QString() : pattern.m_expression.errorString();
}

Pattern::Pattern(const QString &text) : m_text(text), m_expression(QLatin1String(limits) + text) {}

PatternMatch Pattern::match(const QString &subject) const
{
    if (subject.size() > longestSubject)
        return {false, true, {}};
    const QRegularExpressionMatch match = m_expression.match(subject);
    return {match.hasMatch(), !match.isValid(), match.capturedTexts()};
}

QString Pattern::neededText() const
{
    return NeededText(m_text).longest();
}

QString Pattern::replaced(const QString &subject, const QString &replacement) const
{
    QString text = subject;
    return text.replace(m_expression, replacement);
}

} // namespace doctor
