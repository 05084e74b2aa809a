#include <algorithm>

#include "doctor/editors/keyeditor.h"
#include "doctor/repairs/draft.h"
#include "doctor/repairs/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr char formatWords[] = "ini|desktopEntry|json|xml|xcu";
constexpr char mimeListName[] = "/mimeapps.list";
constexpr char defaultsGroup[] = "Default Applications";

Format formatOf(const QString &name)
{
    if (name == QLatin1String("desktopEntry"))
        return Format::DesktopEntry;
    if (name == QLatin1String("json"))
        return Format::Json;
    if (name == QLatin1String("xml"))
        return Format::Xml;
    return name == QLatin1String("xcu") ? Format::Xcu : Format::Ini;
}

QString written(const QString &path, const EditedContent &edited, Draft &draft)
{
    if (!edited.content)
        return texts::tr("%1 cannot be edited: %2").arg(path, edited.problem);
    return draft.write(path, *edited.content);
}

QString planSet(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("set");
    const std::optional<QByteArray> content = draft.content(path);
    if (!content && draft.exists(path))
        return texts::tr("%1 cannot be read").arg(path);
    const KeyEditor &editor = keyEditor(formatOf(arguments.text("format")));
    return written(
        path,
        editor.set(content.value_or(QByteArray()), arguments.texts("key"), arguments.text("value")),
        draft);
}

QString planUnset(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("unset");
    const std::optional<QByteArray> content = draft.content(path);
    if (!content)
        return draft.exists(path) ? texts::tr("%1 cannot be read").arg(path) : QString();
    const KeyEditor &editor = keyEditor(formatOf(arguments.text("format")));
    return written(path, editor.remove(*content, arguments.texts("key")), draft);
}

/// In the user's own list, which comes before all others but a desktop's own.
QString planDefaultApplication(const Arguments &arguments, Draft &draft)
{
    const QString folder =
        draft.machine().variable(QStringLiteral("XDG_CONFIG_HOME")).value_or(QString());
    const QString path = folder + QLatin1String(mimeListName);
    const std::optional<QByteArray> content = draft.content(path);
    if (!content && draft.exists(path))
        return texts::tr("%1 cannot be read").arg(path);
    const QString entry = arguments.text("entry");
    if (entry.contains(QLatin1Char('/')) || !entry.endsWith(QLatin1String(".desktop")))
        return texts::tr("\"%1\" is not the name of a desktop entry").arg(entry);
    const QStringList key{QLatin1String(defaultsGroup), arguments.text("defaultApplication")};
    return written(path,
                   keyEditor(Format::DesktopEntry).set(content.value_or(QByteArray()), key, entry),
                   draft);
}

constexpr Parameter setParameters[] = {{"set", ParameterType::Path, true},
                                       {"format", ParameterType::Word, true, formatWords},
                                       {"key", ParameterType::Texts, true},
                                       {"value", ParameterType::Text, true}};
constexpr Parameter unsetParameters[] = {{"unset", ParameterType::Path, true},
                                         {"format", ParameterType::Word, true, formatWords},
                                         {"key", ParameterType::Texts, true}};
constexpr Parameter defaultParameters[] = {{"defaultApplication", ParameterType::Text, true},
                                           {"entry", ParameterType::Text, true}};

} // namespace

const StepKind setStep{"set", setParameters, &planSet};
const StepKind unsetStep{"unset", unsetParameters, &planUnset};
const StepKind defaultApplicationStep{"defaultApplication", defaultParameters,
                                      &planDefaultApplication};

} // namespace doctor
