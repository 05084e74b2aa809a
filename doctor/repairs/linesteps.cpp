#include <QByteArrayList>

#include <functional>

#include "doctor/conditions/pattern.h"
#include "doctor/repairs/draft.h"
#include "doctor/repairs/kinds.h"

namespace doctor {

namespace {

constexpr int longestLine = 16 * 1024;

/// What becomes of a line; nothing if it goes.
using Edit = std::function<std::optional<QString>(const QString &line)>;

/// Edits the lines that match. Everything else, line ends too, stays as it is.
QString editLines(const QString &path, const Pattern &pattern, const Edit &edit, Draft &draft)
{
    const std::optional<QByteArray> content = draft.content(path);
    if (!content)
        return draft.exists(path) ? QStringLiteral("%1 cannot be read").arg(path) : QString();
    QByteArray edited;
    for (int begin = 0; begin < content->size();) {
        const int found = content->indexOf('\n', begin);
        const int next = found < 0 ? content->size() : found + 1;
        const QByteArray whole = content->mid(begin, next - begin);
        begin = next;
        const int length = whole.endsWith("\r\n") ? whole.size() - 2
                           : whole.endsWith('\n') ? whole.size() - 1
                                                  : whole.size();
        const QString line = QString::fromUtf8(whole.left(length));
        const bool isText = length <= longestLine && line.toUtf8() == whole.left(length);
        const PatternMatch match = isText ? pattern.match(line) : PatternMatch();
        if (match.hasGivenUp)
            return QStringLiteral("the pattern needs too many steps for a line of %1").arg(path);
        if (!match.hasMatched) {
            edited += whole;
        } else if (const std::optional<QString> changed = edit(line)) {
            edited += changed->toUtf8() + whole.mid(length);
        }
    }
    return draft.write(path, edited);
}

QString planReplaceLine(const Arguments &arguments, Draft &draft)
{
    const QString with = arguments.text("with");
    return editLines(
        arguments.text("replaceLine"), Pattern(arguments.text("pattern")),
        [&with](const QString &) { return with; }, draft);
}

QString planRemoveLine(const Arguments &arguments, Draft &draft)
{
    return editLines(
        arguments.text("removeLine"), Pattern(arguments.text("pattern")),
        [](const QString &) { return std::nullopt; }, draft);
}

QString planAddLine(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("addLine");
    const std::optional<QByteArray> content = draft.content(path);
    if (!content && draft.exists(path))
        return QStringLiteral("%1 cannot be read").arg(path);
    const QByteArray line = arguments.text("text").toUtf8();
    QByteArray edited = content.value_or(QByteArray());
    if (edited.split('\n').contains(line))
        return {};
    if (!edited.isEmpty() && !edited.endsWith('\n'))
        edited += '\n';
    return draft.write(path, edited + line + '\n');
}

constexpr Parameter replaceParameters[] = {{"replaceLine", ParameterType::Path, true},
                                           {"pattern", ParameterType::Pattern, true},
                                           {"with", ParameterType::Text, true}};
constexpr Parameter removeParameters[] = {{"removeLine", ParameterType::Path, true},
                                          {"pattern", ParameterType::Pattern, true}};
constexpr Parameter addParameters[] = {{"addLine", ParameterType::Path, true},
                                       {"text", ParameterType::Text, true}};

} // namespace

const StepKind replaceLineStep{"replaceLine", replaceParameters, &planReplaceLine};
const StepKind removeLineStep{"removeLine", removeParameters, &planRemoveLine};
const StepKind addLineStep{"addLine", addParameters, &planAddLine};

} // namespace doctor
