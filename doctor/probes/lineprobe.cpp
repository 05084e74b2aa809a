#include <QFile>

#include "doctor/conditions/pattern.h"
#include "doctor/machine/filereading.h"
#include "doctor/probes/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 largestFile = 16 * 1024 * 1024;
constexpr int longestLine = 16 * 1024;
constexpr int mostLines = 50;
constexpr int mostCaptures = 3;

Observation lineSeen(const QString &path, int line, bool exists)
{
    Observation seen;
    seen.where.append({path, line, 0});
    seen.values.insert(QStringLiteral("path"), Value::ofText(path));
    seen.values.insert(QStringLiteral("exists"), Value::ofFlag(exists));
    seen.values.insert(QStringLiteral("present"), Value::ofFlag(line > 0));
    if (line > 0)
        seen.values.insert(QStringLiteral("lineNumber"), Value::ofNumber(line));
    return seen;
}

/// Independent of the content that a line was a part of.
QString copied(const QString &part)
{
    return QString(part.constData(), part.size());
}

/// Adds the matching lines of one file, or one observation of none.
QString addLines(const QString &path, const Pattern &pattern, const Looking &looking,
                 Observed &observed)
{
    const QString located = looking.machine.located(path);
    const QString content =
        QString::fromUtf8(readFile(located, largestFile).content.value_or(QByteArray()));
    const int before = observed.seen.size();
    int number = 0;
    for (int begin = 0; begin < content.size() && observed.seen.size() - before < mostLines;) {
        const int found = content.indexOf(QLatin1Char('\n'), begin);
        const int end = found < 0 ? content.size() : found;
        int length = std::min(end - begin, longestLine);
        if (length > 0 && content.at(begin + length - 1) == QLatin1Char('\r'))
            --length;
        // Not copied: most lines do not match.
        const QString line = QString::fromRawData(content.constData() + begin, length);
        begin = end + 1;
        ++number;
        const PatternMatch match = pattern.match(line);
        if (match.hasGivenUp)
            return texts::tr("the pattern needs too many steps for a line in %1").arg(path);
        if (looking.deadline.isOver())
            return texts::tr("too many lines to look at in time in %1").arg(path);
        if (!match.hasMatched)
            continue;
        Observation seen = lineSeen(path, number, true);
        seen.values.insert(QStringLiteral("text"), Value::ofText(copied(line)));
        for (int i = 1; i <= mostCaptures && i < match.captured.size(); ++i)
            seen.values.insert(QStringLiteral("part%1").arg(i),
                               Value::ofText(copied(match.captured.at(i))));
        observed.seen.append(seen);
    }
    if (observed.seen.size() == before)
        observed.seen.append(lineSeen(path, 0, QFile::exists(located)));
    return {};
}

Observed lookAtLine(const Arguments &arguments, const Looking &looking)
{
    const MeantPaths meant = meantPaths(arguments, "line", looking, true);
    if (!meant.problem.isEmpty())
        return {{}, meant.problem};
    const Pattern pattern(arguments.text("pattern"));
    Observed observed;
    for (const QString &path : meant.paths) {
        const QString problem = addLines(path, pattern, looking, observed);
        if (!problem.isEmpty())
            return {{}, problem};
    }
    return observed;
}

/// For a text that is put together from values and variables.
Observed lookAtText(const Arguments &arguments, const Looking &)
{
    const QString text = arguments.text("compare");
    Observation seen;
    seen.values.insert(QStringLiteral("value"), Value::ofText(text));
    if (arguments.has("pattern")) {
        const PatternMatch match = Pattern(arguments.text("pattern")).match(text);
        if (match.hasGivenUp)
            return {{}, texts::tr("the pattern needs too many steps")};
        seen.values.insert(QStringLiteral("matched"), Value::ofFlag(match.hasMatched));
        for (int i = 1; i <= mostCaptures && i < match.captured.size(); ++i)
            seen.values.insert(QStringLiteral("part%1").arg(i),
                               Value::ofText(match.captured.at(i)));
    }
    return {{seen}, {}};
}

constexpr Parameter compareParameters[] = {{"compare", ParameterType::Text, true},
                                           {"pattern", ParameterType::Pattern}};
constexpr ProbeValue compareValues[] = {{"value", ValueType::Text},
                                        {"matched", ValueType::Flag},
                                        {"part1", ValueType::Text},
                                        {"part2", ValueType::Text},
                                        {"part3", ValueType::Text}};
constexpr Parameter parameters[] = {{"line", ParameterType::PathPattern, true},
                                    {"pattern", ParameterType::Pattern, true}};
constexpr ProbeValue values[] = {
    {"path", ValueType::Text},         {"exists", ValueType::Flag}, {"present", ValueType::Flag},
    {"lineNumber", ValueType::Number}, {"text", ValueType::Text},   {"part1", ValueType::Text},
    {"part2", ValueType::Text},        {"part3", ValueType::Text},
};

} // namespace

const ProbeKind compareKind{"compare", compareParameters, compareValues, &lookAtText};
const ProbeKind lineKind{"line", parameters, values, &lookAtLine};

} // namespace doctor
