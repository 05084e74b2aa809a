#include <QByteArrayList>

#include "doctor/editors/lineeditor.h"
#include "doctor/repairs/draft.h"
#include "doctor/repairs/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

QString written(const QString &path, const EditedContent &edited, Draft &draft)
{
    if (!edited.content)
        return texts::tr("%1 cannot be edited: %2").arg(path, edited.problem);
    return draft.write(path, *edited.content);
}

LineQuery queryOf(const Arguments &arguments)
{
    return {LineQuery::Kind::Pattern, arguments.text("pattern")};
}

/// The first line that matches.
QString planReplaceLine(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("replaceLine");
    const std::optional<QByteArray> content = draft.content(path);
    if (!content)
        return texts::tr("%1 cannot be read").arg(path);
    return written(path, replaceLine(*content, queryOf(arguments), arguments.text("with")), draft);
}

QString planRemoveLine(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("removeLine");
    const std::optional<QByteArray> content = draft.content(path);
    if (!content)
        return texts::tr("%1 cannot be read").arg(path);
    return written(path, removeLine(*content, queryOf(arguments)), draft);
}

/// The line with exactly this text.
QString planDropLine(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("dropLine");
    const std::optional<QByteArray> content = draft.content(path);
    if (!content)
        return texts::tr("%1 cannot be read").arg(path);
    return written(path, removeLine(*content, {LineQuery::Kind::Whole, arguments.text("text")}),
                   draft);
}

QString planAddLine(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("addLine");
    const std::optional<QByteArray> content = draft.content(path);
    if (!content && draft.exists(path))
        return texts::tr("%1 cannot be read").arg(path);
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
constexpr Parameter dropParameters[] = {{"dropLine", ParameterType::Path, true},
                                        {"text", ParameterType::Text, true}};
constexpr Parameter addParameters[] = {{"addLine", ParameterType::Path, true},
                                       {"text", ParameterType::Text, true}};

} // namespace

const StepKind replaceLineStep{"replaceLine", replaceParameters, &planReplaceLine};
const StepKind removeLineStep{"removeLine", removeParameters, &planRemoveLine};
const StepKind dropLineStep{"dropLine", dropParameters, &planDropLine};
const StepKind addLineStep{"addLine", addParameters, &planAddLine};

} // namespace doctor
