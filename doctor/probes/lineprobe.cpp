#include <QFile>

#include <algorithm>

#include "doctor/conditions/pattern.h"
#include "doctor/probes/facts.h"
#include "doctor/probes/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

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

/// What a pattern sees of a line; most of a long one is left out.
QString lineText(const QByteArray &content, int begin, int end)
{
    constexpr int mostBytesOfCharacter = 4;
    const int length = std::min(end - begin, longestLine * mostBytesOfCharacter);
    QString line = QString::fromUtf8(content.constData() + begin, length);
    line.truncate(longestLine);
    if (line.endsWith(QLatin1Char('\r')))
        line.chop(1);
    return line;
}

/// A line of a file, and where the next one begins.
struct Line
{
    int number = 0;
    int begin = 0;
    int next = 0;
    QString text;
};

/// Moves to the next line that has @p part; false if there is none.
bool moveToLine(const QByteArray &content, const QByteArray &part, Line &line)
{
    int begin = line.next;
    if (!part.isEmpty()) {
        const int hit = content.indexOf(part, begin);
        if (hit < 0)
            return false;
        const int before = hit == 0 ? -1 : content.lastIndexOf('\n', hit - 1);
        line.number += static_cast<int>(
            std::count(content.begin() + begin, content.begin() + before + 1, '\n'));
        begin = before + 1;
    }
    if (begin >= content.size())
        return false;
    const int found = content.indexOf('\n', begin);
    const int end = found < 0 ? content.size() : found;
    line = {line.number + 1, begin, end + 1, lineText(content, begin, end)};
    return true;
}

/// Adds the matching lines of one file, or one observation of none.
QString addLines(const QString &path, const Pattern &pattern, const Looking &looking,
                 Observed &observed)
{
    const QByteArray content =
        looking.facts.file(looking.machine, path).content.value_or(QByteArray());
    // Settings can have tens of thousands of lines, of which most cannot match.
    const QByteArray part = pattern.neededText().toUtf8();
    const int before = observed.seen.size();
    for (Line line; observed.seen.size() - before < mostLines && moveToLine(content, part, line);) {
        const PatternMatch match = pattern.match(line.text);
        if (match.hasGivenUp)
            return texts::tr("the pattern needs too many steps for a line in %1").arg(path);
        if (looking.deadline.isOver())
            return texts::tr("too many lines to look at in time in %1").arg(path);
        if (!match.hasMatched)
            continue;
        Observation seen = lineSeen(path, line.number, true);
        seen.values.insert(QStringLiteral("text"), Value::ofText(line.text));
        for (int i = 1; i <= mostCaptures && i < match.captured.size(); ++i)
            seen.values.insert(QStringLiteral("part%1").arg(i),
                               Value::ofText(match.captured.at(i)));
        observed.seen.append(seen);
    }
    if (observed.seen.size() == before)
        observed.seen.append(lineSeen(path, 0, QFile::exists(looking.machine.located(path))));
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
