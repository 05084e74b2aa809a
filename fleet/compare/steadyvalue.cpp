#include "fleet/compare/steadyvalue.h"

#include <QRegularExpression>
#include <QVector>

#include <algorithm>

namespace fleet {

namespace {

constexpr int shortestName = 3;

struct Replacement
{
    QRegularExpression pattern;
    QString word;
};

/// Longer forms come before those that they contain.
const QVector<Replacement> &replacements()
{
    static const QVector<Replacement> all{
        {QRegularExpression(QStringLiteral("[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-"
                                           "[0-9a-f]{12}"),
                            QRegularExpression::CaseInsensitiveOption),
         QStringLiteral("ID")},
        {QRegularExpression(QStringLiteral("\\b\\d{4}-\\d\\d-\\d\\d[T ]\\d\\d:\\d\\d(:\\d\\d"
                                           "(\\.\\d+)?)?(Z|[+-]\\d\\d:?\\d\\d)?")),
         QStringLiteral("TIME")},
        {QRegularExpression(QStringLiteral("\\b\\d{4}-\\d\\d-\\d\\d\\b")), QStringLiteral("DATE")},
        {QRegularExpression(QStringLiteral("\\b\\d{1,2}:\\d\\d:\\d\\d\\b")),
         QStringLiteral("TIME")},
        {QRegularExpression(QStringLiteral("/run/user/\\d+")), QStringLiteral("/run/user/UID")},
        {QRegularExpression(QStringLiteral("/proc/\\d+")), QStringLiteral("/proc/PID")},
        {QRegularExpression(QStringLiteral("(/(?:var/)?tmp/)[^/\\s:,;]*\\d[^/\\s:,;]*")),
         QStringLiteral("\\1NAME")},
        {QRegularExpression(QStringLiteral("\\b(pid|process|uid|session)([ =:]*)\\d+"),
                            QRegularExpression::CaseInsensitiveOption),
         QStringLiteral("\\1\\2N")},
        {QRegularExpression(QStringLiteral("\\b(?=[0-9a-f]*\\d)[0-9a-f]{16,}\\b"),
                            QRegularExpression::CaseInsensitiveOption),
         QStringLiteral("ID")},
        // Seconds since 1970, of this century.
        {QRegularExpression(QStringLiteral("\\b1\\d{9}(\\d{3})?\\b")), QStringLiteral("TIME")},
    };
    return all;
}

/// Lists whose order means nothing.
QString sorted(const QString &value)
{
    const QString comma = QStringLiteral(", ");
    if (!value.contains(comma))
        return value;
    QStringList parts = value.split(comma);
    parts.sort();
    return parts.join(comma);
}

/// Replaces @p name where it stands as a word.
void replaceWord(QString &text, const QString &name, const QString &word)
{
    if (name.size() < shortestName || !text.contains(name))
        return;
    text.replace(QRegularExpression(QStringLiteral("(?<![A-Za-z0-9_])%1(?![A-Za-z0-9_])")
                                        .arg(QRegularExpression::escape(name))),
                 word);
}

} // namespace

QString steadyName(const QString &name, const Report &report)
{
    QString steady = name;
    if (report.home.size() > 1)
        steady.replace(report.home, QStringLiteral("~"));
    replaceWord(steady, report.host, QStringLiteral("HOST"));
    replaceWord(steady, report.user, QStringLiteral("USER"));
    return steady;
}

QString steadyValue(const QString &value, const Report &report)
{
    QString steady = steadyName(value.simplified(), report);
    // Most values are short words: this spares them the patterns, which all need a digit.
    if (std::any_of(steady.begin(), steady.end(), [](QChar each) { return each.isDigit(); })) {
        for (const Replacement &replacement : replacements())
            steady.replace(replacement.pattern, replacement.word);
    }
    return sorted(steady);
}

bool isPassing(const QString &group, const QString &name)
{
    static const QRegularExpression passing(
        QStringLiteral("uptime|\\b(load|uuid|mac)\\b|boot.?id|machine.?id|serial|"
                       "address of|free memory|available|\\bused\\b|temperature|"
                       "last (login|update|check)|started at|\\bsince\\b"),
        QRegularExpression::CaseInsensitiveOption);
    return group != QLatin1String("packages") && group != QLatin1String("fonts") &&
           passing.match(name).hasMatch();
}

} // namespace fleet
