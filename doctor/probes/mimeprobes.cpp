#include <QFile>
#include <QHash>

#include "doctor/editors/keyeditor.h"
#include "doctor/machine/filereading.h"
#include "doctor/probes/kinds.h"

namespace doctor {

namespace {

constexpr qint64 largestList = 4 * 1024 * 1024;

QStringList folders(const Machine &machine, const char *own, const char *others, const char *usual)
{
    const QString ownFolder = machine.variable(QLatin1String(own)).value_or(QString());
    const QString list = machine.variable(QLatin1String(others)).value_or(QLatin1String(usual));
    return QStringList{ownFolder} + list.split(QLatin1Char(':'), Qt::SkipEmptyParts);
}

QStringList dataFolders(const Machine &machine)
{
    return folders(machine, "XDG_DATA_HOME", "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}

/// The lists of default applications, the deciding one first, as the XDG standard for associations
/// between MIME types and applications orders them.
QStringList mimeLists(const Machine &machine)
{
    const QString desktops = machine.environment.value(QStringLiteral("XDG_CURRENT_DESKTOP"));
    QStringList places = folders(machine, "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "/etc/xdg");
    for (const QString &folder : dataFolders(machine))
        places.append(folder + QStringLiteral("/applications"));
    QStringList lists;
    for (const QString &place : qAsConst(places)) {
        for (const QString &desktop :
             desktops.toLower().split(QLatin1Char(':'), Qt::SkipEmptyParts))
            lists.append(place + QLatin1Char('/') + desktop + QStringLiteral("-mimeapps.list"));
        lists.append(place + QStringLiteral("/mimeapps.list"));
    }
    return lists;
}

QString entryPath(const QString &entry, const Machine &machine)
{
    for (const QString &folder : dataFolders(machine)) {
        QString path = folder + QStringLiteral("/applications/") + entry;
        if (!entry.contains(QLatin1Char('/')) && QFile::exists(machine.located(path)))
            return path;
    }
    return {};
}

/// The first entry of a list that is there. "Missing" are those before it that are not.
struct Chosen
{
    QString entry;
    QString path;
    QString list;
    int line = 0;
    QStringList missing;
};

void choose(const QString &list, const QString &group, const QString &type, const Machine &machine,
            Chosen &chosen)
{
    const FileContent file = readFile(machine.located(list), largestList);
    const std::optional<FoundKey> found =
        file.content ? keyEditor(Format::DesktopEntry).find(*file.content, {group, type})
                     : std::nullopt;
    if (!found)
        return;
    for (const QString &name : found->value.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString path = entryPath(name.trimmed(), machine);
        if (path.isEmpty()) {
            chosen.missing.append(name.trimmed());
        } else if (chosen.entry.isEmpty()) {
            chosen.entry = name.trimmed();
            chosen.path = path;
            chosen.list = list;
            chosen.line = found->line;
        }
    }
}

Chosen defaultOf(const QString &type, const Machine &machine)
{
    Chosen chosen;
    for (const QString &list : mimeLists(machine)) {
        choose(list, QStringLiteral("Default Applications"), type, machine, chosen);
        if (!chosen.entry.isEmpty())
            return chosen;
    }
    // Without a default it is the first that can open the type.
    for (const QString &folder : dataFolders(machine)) {
        choose(folder + QStringLiteral("/applications/mimeinfo.cache"),
               QStringLiteral("MIME Cache"), type, machine, chosen);
        if (!chosen.entry.isEmpty())
            break;
    }
    return chosen;
}

Observed lookAtMimeDefault(const Arguments &arguments, const Looking &looking)
{
    const QString type = arguments.text("mimeDefault");
    const Chosen chosen = defaultOf(type, looking.machine);
    Observation seen;
    if (!chosen.list.isEmpty())
        seen.where.append({chosen.list, chosen.line, 0});
    seen.values = {
        {QStringLiteral("mime"), Value::ofText(type)},
        {QStringLiteral("present"), Value::ofFlag(!chosen.entry.isEmpty())},
        {QStringLiteral("entry"), Value::ofText(chosen.entry)},
        {QStringLiteral("path"), Value::ofText(chosen.path)},
        {QStringLiteral("list"), Value::ofText(chosen.list)},
        {QStringLiteral("missing"), Value::ofText(chosen.missing.join(QStringLiteral(", ")))}};
    return {{seen}, {}};
}

/// The types of suffixes, as the desktop's database of MIME types has them: the heaviest pattern
/// counts, of equal ones that of the first folder.
QHash<QString, QString> typesOfSuffixes(const Machine &machine)
{
    QHash<QString, QString> types;
    QHash<QString, int> weights;
    for (const QString &folder : dataFolders(machine)) {
        const QString path = machine.located(folder + QStringLiteral("/mime/globs2"));
        const QByteArray content = readFile(path, largestList).content.value_or(QByteArray());
        for (const QByteArray &line : content.split('\n')) {
            // weight:type:pattern, perhaps with flags behind
            const QList<QByteArray> fields = line.split(':');
            if (fields.size() < 3 || line.startsWith('#') || !fields.at(2).startsWith("*."))
                continue;
            const QString suffix = QString::fromUtf8(fields.at(2).mid(2)).toLower();
            const int weight = fields.at(0).toInt();
            if (weight <= weights.value(suffix, -1))
                continue;
            weights.insert(suffix, weight);
            types.insert(suffix, QString::fromUtf8(fields.at(1)));
        }
    }
    return types;
}

/// By name alone.
Observed lookAtFileType(const Arguments &arguments, const Looking &looking)
{
    const QHash<QString, QString> types = typesOfSuffixes(looking.machine);
    Observed observed;
    for (const QString &name : arguments.texts("fileType")) {
        const QString suffix = name.section(QLatin1Char('.'), -1);
        const QString type = types.value(suffix.toLower());
        Observation seen;
        seen.values = {{QStringLiteral("name"), Value::ofText(name)},
                       {QStringLiteral("suffix"), Value::ofText(suffix)},
                       {QStringLiteral("mime"), Value::ofText(type)},
                       {QStringLiteral("known"), Value::ofFlag(!type.isEmpty())}};
        observed.seen.append(seen);
    }
    return observed;
}

constexpr Parameter defaultParameters[] = {{"mimeDefault", ParameterType::Text, true}};
constexpr ProbeValue defaultValues[] = {{"mime", ValueType::Text},  {"present", ValueType::Flag},
                                        {"entry", ValueType::Text}, {"path", ValueType::Text},
                                        {"list", ValueType::Text},  {"missing", ValueType::Text}};
constexpr Parameter typeParameters[] = {{"fileType", ParameterType::Texts, true}};
constexpr ProbeValue typeValues[] = {{"name", ValueType::Text},
                                     {"suffix", ValueType::Text},
                                     {"mime", ValueType::Text},
                                     {"known", ValueType::Flag}};

} // namespace

const ProbeKind mimeDefaultKind{"mimeDefault", defaultParameters, defaultValues,
                                &lookAtMimeDefault};
const ProbeKind fileTypeKind{"fileType", typeParameters, typeValues, &lookAtFileType};

} // namespace doctor
