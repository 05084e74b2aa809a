#include "doctor/format/checkreader.h"

#include "doctor/conditions/units.h"
#include "doctor/format/fieldreader.h"
#include "doctor/format/jsondocument.h"
#include "doctor/format/lookreader.h"
#include "doctor/machine/filereading.h"
#include "suites/description.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr int mostChecks = 500;
constexpr int mostRepairs = 20;
constexpr int mostSteps = 50;
constexpr double longestLimit = 120;

std::optional<QString> readWord(const JsonNode &object, const char *name, const QStringList &words)
{
    const std::optional<JsonNode> node = object.member(name);
    if (!node)
        return std::nullopt;
    if (words.contains(node->text()))
        return node->text();
    node->report(texts::tr("expected one of %1%2")
                     .arg(words.join(QStringLiteral(", ")), suggestion(node->text(), words)));
    return std::nullopt;
}

void readLimit(const JsonNode &object, CheckDefinition &check)
{
    const std::optional<JsonNode> node = object.member("limit");
    if (!node)
        return;
    const double seconds = node->isText() ? ageOf(node->text()).value_or(0) : 0;
    if (seconds < 0.01 || seconds > longestLimit)
        node->report(texts::tr("expected a time from \"10ms\" to \"120s\""));
    else
        check.limit = std::chrono::milliseconds(static_cast<qint64>(seconds * 1000));
}

void readFinding(const JsonNode &object, const QSet<QString> &values, CheckDefinition &check)
{
    const std::optional<JsonNode> node = object.member("finding");
    if (!node || !node->isObject()) {
        (node ? *node : object)
            .report(texts::tr("expected \"finding\": {\"state\": …, \"text\": …}"));
        return;
    }
    reportUnknown(*node, {QStringLiteral("state"), QStringLiteral("text")}, texts::tr("a finding"));
    const std::optional<QString> state = readWord(
        *node, "state", {QStringLiteral("bad"), QStringLiteral("warning"), QStringLiteral("note")});
    if (state)
        check.state = *state == QLatin1String("bad")       ? State::Bad
                      : *state == QLatin1String("warning") ? State::Warning
                                                           : State::Note;
    if (const std::optional<JsonNode> text = node->member("text"))
        check.text = readLocalText(*text, values);
    else
        node->report(texts::tr("expected a \"text\" in the finding"));
}

const StepKind *stepKindOf(const JsonNode &node)
{
    for (const QString &name : node.names()) {
        if (const StepKind *kind = stepKindNamed(name))
            return kind;
    }
    return nullptr;
}

std::optional<Step> readStep(const JsonNode &node, const QSet<QString> &values)
{
    const StepKind *kind = stepKindOf(node);
    QStringList names;
    if (!kind) {
        for (const StepKind *known : stepKinds())
            names.append(QLatin1String(known->name));
        const QString hint =
            node.names().isEmpty() ? QString() : suggestion(node.names().first(), names);
        node.report(
            texts::tr("expected a step: one of %1%2").arg(names.join(QStringLiteral(", ")), hint));
        return std::nullopt;
    }
    for (const Parameter &parameter : kind->parameters)
        names.append(QLatin1String(parameter.name));
    reportUnknown(node, names, texts::tr("the step \"%1\"").arg(QLatin1String(kind->name)));
    return Step{kind, readArguments(node, kind->parameters, values)};
}

RepairDefinition readRepair(const JsonNode &node, const QSet<QString> &values)
{
    RepairDefinition repair;
    if (!isObjectOrReport(node, texts::tr("a repair")))
        return repair;
    reportUnknown(node,
                  {QStringLiteral("id"), QStringLiteral("title"), QStringLiteral("when"),
                   QStringLiteral("steps")},
                  texts::tr("a repair"));
    repair.id = readId(node);
    if (const std::optional<JsonNode> title = node.member("title"))
        repair.title = readLocalText(*title, values);
    else
        node.report(texts::tr("expected a \"title\" of the repair"));
    if (const std::optional<JsonNode> when = node.member("when")) {
        QSet<QString> usable = values;
        repair.when = readLook(*when, usable);
    }
    const std::optional<JsonNode> steps = node.member("steps");
    if (!steps || steps->items().isEmpty() || steps->items().size() > mostSteps) {
        (steps ? *steps : node)
            .report(texts::tr("expected \"steps\": a list of 1 to %1").arg(mostSteps));
        return repair;
    }
    for (const JsonNode &item : steps->items()) {
        if (const std::optional<Step> step = readStep(item, values))
            repair.steps.append(*step);
    }
    return repair;
}

void readRepairs(const JsonNode &object, const QSet<QString> &values, CheckDefinition &check)
{
    const std::optional<JsonNode> node = object.member("repairs");
    if (!node)
        return;
    if (!node->isList() || node->items().size() > mostRepairs) {
        node->report(texts::tr("expected a list of at most %1 repairs").arg(mostRepairs));
        return;
    }
    QSet<QString> ids;
    for (const JsonNode &item : node->items()) {
        const RepairDefinition repair = readRepair(item, values);
        if (ids.contains(repair.id))
            item.report(texts::tr("another repair of this check has this id"));
        ids.insert(repair.id);
        check.repairs.append(repair);
    }
}

/// The values of the suite's installation can be used in all looks.
QSet<QString> valuesOfSuite()
{
    QSet<QString> values;
    for (const ProbeValue &value : probeKindNamed(QStringLiteral("suite"))->values)
        values.insert(QStringLiteral("suite.") + QLatin1String(value.name));
    return values;
}

/// @param suite that of the file, for a check that names none
CheckDefinition readCheck(const JsonNode &node, const QString &path, const QString &suite)
{
    CheckDefinition check;
    check.file = path;
    if (!isObjectOrReport(node, texts::tr("a check")))
        return check;
    QStringList known;
    for (const char *name : {"id", "title", "about", "cost", "limit", "disabled", "suite", "when",
                             "skipped", "look", "finding", "repairs", "$schema"})
        known.append(QLatin1String(name));
    reportUnknown(node, known, texts::tr("a check"));
    check.id = readId(node);
    if (const std::optional<JsonNode> disabled = node.member("disabled")) {
        if (!disabled->isFlag())
            disabled->report(texts::tr("expected true or false"));
        check.isDisabled = disabled->text() == QLatin1String("true");
        if (check.isDisabled && !node.member("look"))
            return check;
    }
    if (const std::optional<JsonNode> title = node.member("title"))
        check.title = readLocalText(*title, {});
    else
        node.report(texts::tr("expected a \"title\""));
    if (const std::optional<JsonNode> about = node.member("about"))
        check.about = readLocalText(*about, {});
    if (readWord(node, "cost", {QStringLiteral("quick"), QStringLiteral("slow")}) ==
        QLatin1String("slow"))
        check.cost = CheckDefinition::Cost::Slow;
    readLimit(node, check);
    check.suite = readWord(node, "suite", suites::descriptionIds()).value_or(suite);
    QSet<QString> values = check.suite.isEmpty() ? QSet<QString>() : valuesOfSuite();
    if (const std::optional<JsonNode> when = node.member("when"))
        check.when = readLook(*when, values);
    if (const std::optional<JsonNode> skipped = node.member("skipped"))
        check.skipped = readLocalText(*skipped, {});
    if (const std::optional<JsonNode> look = node.member("look"))
        check.look = readLook(*look, values);
    else
        node.report(texts::tr("expected a \"look\""));
    readFinding(node, values, check);
    readRepairs(node, values, check);
    return check;
}

QVector<JsonNode> checksIn(const JsonNode &root)
{
    const std::optional<JsonNode> list = root.member("checks");
    if (!list)
        return {root};
    reportUnknown(root,
                  {QStringLiteral("checks"), QStringLiteral("suite"), QStringLiteral("$schema")},
                  texts::tr("a file of several checks"));
    const QVector<JsonNode> items = list->items();
    if (items.isEmpty() || items.size() > mostChecks)
        list->report(texts::tr("expected a list of 1 to %1 checks").arg(mostChecks));
    return items.mid(0, mostChecks);
}

} // namespace

CheckFile readChecks(const QByteArray &content, const QString &path)
{
    if (content.size() > largestCheckFile)
        return {{}, {{1, 1, texts::tr("larger than 1 MiB")}}};
    JsonDocument document(content);
    QVector<CheckDefinition> checks;
    if (const std::optional<JsonNode> root = document.root()) {
        QSet<QString> ids;
        const QString suite =
            root->member("checks")
                ? readWord(*root, "suite", suites::descriptionIds()).value_or(QString())
                : QString();
        for (const JsonNode &node : checksIn(*root)) {
            checks.append(readCheck(node, path, suite));
            if (ids.contains(checks.last().id) && !checks.last().id.isEmpty())
                node.report(texts::tr("another check in this file has this id"));
            ids.insert(checks.last().id);
        }
    }
    if (!document.mistakes().isEmpty())
        return {{}, document.mistakes()};
    return {checks, {}};
}

CheckFile readCheckFile(const QString &path)
{
    const FileContent file = readFile(path, largestCheckFile);
    if (!file.content)
        return {{}, {{1, 1, texts::tr("cannot be read: %1").arg(file.problem)}}};
    return readChecks(*file.content, path);
}

} // namespace doctor
