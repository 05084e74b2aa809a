#include <QFile>

#include "doctor/editors/xml/wholexml.h"
#include "doctor/machine/filereading.h"
#include "doctor/machine/packedcopies.h"
#include "doctor/probes/facts.h"
#include "doctor/probes/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 largestFile = 16 * 1024 * 1024;

Observation observedXml(const QString &path, const Looking &looking)
{
    Observation seen;
    const QString located = looking.machine.located(path);
    const FileContent file = looking.facts.file(looking.machine, path);
    seen.values.insert(QStringLiteral("path"), Value::ofText(path));
    seen.values.insert(QStringLiteral("exists"), Value::ofFlag(QFile::exists(located)));
    seen.values.insert(QStringLiteral("readable"), Value::ofFlag(file.content.has_value()));
    int line = 0;
    if (file.content) {
        const XmlState state = xmlState(*file.content);
        line = state.line;
        seen.values.insert(QStringLiteral("whole"), Value::ofFlag(state.isWhole));
        seen.values.insert(QStringLiteral("root"), Value::ofText(state.root));
        seen.values.insert(QStringLiteral("problem"), Value::ofText(state.problem));
        seen.values.insert(QStringLiteral("lineNumber"), Value::ofNumber(line));
        seen.values.insert(QStringLiteral("size"), Value::ofSize(file.content->size()));
    }
    seen.where.append({path, line, 0});
    return seen;
}

Observed lookAtXmlDocument(const Arguments &arguments, const Looking &looking)
{
    const MeantPaths meant = meantPaths(arguments, "xmlDocument", looking, true);
    Observed observed;
    observed.problem = meant.problem;
    for (const QString &path : meant.paths) {
        if (looking.deadline.isOver())
            return {{}, texts::tr("too many files to read in time")};
        observed.seen.append(observedXml(path, looking));
    }
    return observed;
}

Observed lookAtPackedCopy(const Arguments &arguments, const Looking &looking)
{
    const QString path = arguments.text("packedCopy");
    const FileContent file = readFile(looking.machine.located(path), largestFile);
    const QVector<QByteArray> copies =
        packedCopies(file.content.value_or(QByteArray()), largestFile);
    int whole = 0;
    for (const QByteArray &copy : copies)
        whole += xmlState(copy).isWhole ? 1 : 0;
    Observation seen;
    seen.where.append({path, 0, 0});
    seen.values.insert(QStringLiteral("path"), Value::ofText(path));
    seen.values.insert(QStringLiteral("exists"), Value::ofFlag(file.content.has_value()));
    seen.values.insert(QStringLiteral("copies"), Value::ofNumber(copies.size()));
    seen.values.insert(QStringLiteral("whole"), Value::ofNumber(whole));
    return {{seen}, {}};
}

constexpr Parameter xmlParameters[] = {{"xmlDocument", ParameterType::PathPattern, true}};
constexpr ProbeValue xmlValues[] = {
    {"path", ValueType::Text},  {"exists", ValueType::Flag},      {"readable", ValueType::Flag},
    {"whole", ValueType::Flag}, {"root", ValueType::Text},        {"problem", ValueType::Text},
    {"size", ValueType::Size},  {"lineNumber", ValueType::Number}};
constexpr Parameter packParameters[] = {{"packedCopy", ParameterType::Path, true}};
constexpr ProbeValue packValues[] = {{"path", ValueType::Text},
                                     {"exists", ValueType::Flag},
                                     {"copies", ValueType::Number},
                                     {"whole", ValueType::Number}};

} // namespace

const ProbeKind xmlDocumentKind{"xmlDocument", xmlParameters, xmlValues, &lookAtXmlDocument};
const ProbeKind packedCopyKind{"packedCopy", packParameters, packValues, &lookAtPackedCopy};

} // namespace doctor
