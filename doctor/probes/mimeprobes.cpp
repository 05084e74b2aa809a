#include <QHash>

#include "doctor/machine/filereading.h"
#include "doctor/probes/facts.h"
#include "doctor/probes/kinds.h"

namespace doctor {

namespace {

constexpr qint64 largestList = 4 * 1024 * 1024;

QStringList dataFolders(const Machine &machine)
{
    const QString own = machine.variable(QStringLiteral("XDG_DATA_HOME")).value_or(QString());
    const QString others = machine.variable(QStringLiteral("XDG_DATA_DIRS"))
                               .value_or(QStringLiteral("/usr/local/share:/usr/share"));
    return QStringList{own} + others.split(QLatin1Char(':'), Qt::SkipEmptyParts);
}

/// What lists name though it cannot be used.
QStringList missingOf(const Opening &opening)
{
    QStringList missing;
    for (const Statement &statement : opening.gio.statements) {
        if (statement.fate == Fate::Fails)
            missing.append(statement.entry);
    }
    return missing;
}

Observed lookAtMimeDefault(const Arguments &arguments, const Looking &looking)
{
    const QString type = arguments.text("mimeDefault");
    const Opening opening = looking.facts.opening(looking.machine, type);
    if (opening.verdict == Opening::Verdict::Undecided)
        return {{}, opening.text};
    const OpenChoice &chosen = opening.gio.choice;
    Observation seen;
    if (!chosen.entry.isEmpty())
        seen.where.append({chosen.where.path, chosen.where.line, 0});
    seen.values = {
        {QStringLiteral("mime"), Value::ofText(type)},
        {QStringLiteral("present"), Value::ofFlag(!chosen.entry.isEmpty())},
        {QStringLiteral("entry"), Value::ofText(chosen.entry)},
        {QStringLiteral("path"), Value::ofText(chosen.path)},
        {QStringLiteral("list"), Value::ofText(chosen.where.path)},
        {QStringLiteral("missing"), Value::ofText(missingOf(opening).join(QStringLiteral(", ")))}};
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

Opening Facts::opening(const Machine &machine, const QString &type)
{
    const std::lock_guard<std::mutex> guard(m_openMutex);
    if (!m_openQuestion)
        m_openQuestion = std::make_unique<OpenQuestion>(machine);
    return m_openQuestion->byGio(type);
}

const ProbeKind mimeDefaultKind{"mimeDefault", defaultParameters, defaultValues,
                                &lookAtMimeDefault};
const ProbeKind fileTypeKind{"fileType", typeParameters, typeValues, &lookAtFileType};

} // namespace doctor
