#include <QFile>

#include <algorithm>

#include "doctor/editors/keyeditor.h"
#include "doctor/probes/facts.h"
#include "doctor/probes/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

/// Most settings are not set, and these files can be long: where the name does not stand, the XML
/// need not be read.
bool mayHave(const QByteArray &content, Format format, const QStringList &key)
{
    const QString &name = key.last();
    const bool isPlain = std::all_of(name.begin(), name.end(),
                                     [](QChar character) { return character.isLetterOrNumber(); });
    return format != Format::Xcu || !isPlain || content.contains(name.toUtf8());
}

Observation observedKey(const QString &path, Format format, const QStringList &key,
                        const Arguments &arguments, const Looking &looking)
{
    Observation seen;
    const FileContent file = looking.facts.file(looking.machine, path);
    const std::optional<FoundKey> found = file.content && mayHave(*file.content, format, key)
                                              ? keyEditor(format).find(*file.content, key)
                                              : std::nullopt;
    seen.where.append({path, found ? found->line : 0, 0});
    Values &values = seen.values;
    values.insert(QStringLiteral("path"), Value::ofText(path));
    values.insert(QStringLiteral("name"), Value::ofText(path.section(QLatin1Char('/'), -1)));
    values.insert(QStringLiteral("exists"),
                  Value::ofFlag(QFile::exists(looking.machine.located(path))));
    values.insert(QStringLiteral("readable"), Value::ofFlag(file.content.has_value()));
    values.insert(QStringLiteral("present"), Value::ofFlag(found.has_value()));
    if (found) {
        values.insert(QStringLiteral("value"), Value::ofText(found->value));
        values.insert(QStringLiteral("lineNumber"), Value::ofNumber(found->line));
    } else if (arguments.has("default")) {
        values.insert(QStringLiteral("value"), Value::ofText(arguments.text("default")));
    }
    return seen;
}

Observed lookAtKey(const char *parameter, Format format, const QStringList &key,
                   const Arguments &arguments, const Looking &looking)
{
    const MeantPaths meant = meantPaths(arguments, parameter, looking, true);
    Observed observed;
    observed.problem = meant.problem;
    for (const QString &path : meant.paths) {
        if (looking.deadline.isOver())
            return {{}, texts::tr("too many files to read in time")};
        observed.seen.append(observedKey(path, format, key, arguments, looking));
    }
    return observed;
}

Observed lookAtIni(const Arguments &arguments, const Looking &looking)
{
    return lookAtKey("ini", Format::Ini, {arguments.text("section"), arguments.text("key")},
                     arguments, looking);
}

Observed lookAtDesktopEntry(const Arguments &arguments, const Looking &looking)
{
    const QString group = arguments.text("group", "Desktop Entry");
    return lookAtKey("desktopEntry", Format::DesktopEntry, {group, arguments.text("key")},
                     arguments, looking);
}

Observed lookAtJson(const Arguments &arguments, const Looking &looking)
{
    return lookAtKey("json", Format::Json, arguments.texts("key"), arguments, looking);
}

Observed lookAtXml(const Arguments &arguments, const Looking &looking)
{
    return lookAtKey("xml", Format::Xml, arguments.texts("key"), arguments, looking);
}

Observed lookAtXcu(const Arguments &arguments, const Looking &looking)
{
    return lookAtKey("xcu", Format::Xcu, {arguments.text("item"), arguments.text("key")}, arguments,
                     looking);
}

constexpr ProbeValue keyValues[] = {
    {"path", ValueType::Text},         {"name", ValueType::Text},    {"exists", ValueType::Flag},
    {"readable", ValueType::Flag},     {"present", ValueType::Flag}, {"value", ValueType::Text},
    {"lineNumber", ValueType::Number},
};
constexpr Parameter iniParameters[] = {{"ini", ParameterType::PathPattern, true},
                                       {"section", ParameterType::Text},
                                       {"key", ParameterType::Text, true},
                                       {"default", ParameterType::Text}};
constexpr Parameter desktopParameters[] = {{"desktopEntry", ParameterType::PathPattern, true},
                                           {"group", ParameterType::Text},
                                           {"key", ParameterType::Text, true},
                                           {"default", ParameterType::Text}};
constexpr Parameter jsonParameters[] = {{"json", ParameterType::PathPattern, true},
                                        {"key", ParameterType::Texts, true},
                                        {"default", ParameterType::Text}};
constexpr Parameter xmlParameters[] = {{"xml", ParameterType::PathPattern, true},
                                       {"key", ParameterType::Texts, true},
                                       {"default", ParameterType::Text}};
constexpr Parameter xcuParameters[] = {{"xcu", ParameterType::PathPattern, true},
                                       {"item", ParameterType::Text, true},
                                       {"key", ParameterType::Text, true},
                                       {"default", ParameterType::Text}};

} // namespace

const ProbeKind iniKind{"ini", iniParameters, keyValues, &lookAtIni};
const ProbeKind desktopEntryKind{"desktopEntry", desktopParameters, keyValues, &lookAtDesktopEntry};
const ProbeKind jsonKind{"json", jsonParameters, keyValues, &lookAtJson};
const ProbeKind xmlKind{"xml", xmlParameters, keyValues, &lookAtXml};
const ProbeKind xcuKind{"xcu", xcuParameters, keyValues, &lookAtXcu};

} // namespace doctor
