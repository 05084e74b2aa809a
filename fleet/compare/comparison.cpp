#include "fleet/compare/comparison.h"

#include <QHash>

#include <algorithm>
#include <tuple>

#include "fleet/compare/importance.h"
#include "fleet/compare/steadyvalue.h"

namespace fleet {

namespace {

using Values = QVector<std::optional<QString>>;

/// More facts than this that differ in the same way are one difference.
constexpr int mostAlike = 3;

/// A difference, and what orders it.
struct Ranked
{
    Difference difference;
    int rank = 0;
};

/// Facts of a report by group, with findings and what is unknown as groups of their own.
QMap<QString, Facts> factsOf(const Report &report)
{
    QMap<QString, Facts> groups = report.groups;
    Facts &findings = groups[QStringLiteral("findings")];
    for (const ReportedFinding &finding : report.findings) {
        QString &text = findings[finding.check];
        text += (text.isEmpty() ? QString() : QStringLiteral(", ")) + finding.text;
    }
    Facts &unknown = groups[QStringLiteral("unknown")];
    for (const QString &one : report.unknown)
        unknown.insert(one.section(QLatin1Char(':'), 0, 0), one);
    return groups;
}

/// A group of every report: name → what each report has.
QMap<QString, Values> valuesByName(const QVector<Report> &reports,
                                   const QVector<QMap<QString, Facts>> &groups,
                                   const QString &group)
{
    QMap<QString, Values> names;
    for (int i = 0; i < reports.size(); ++i) {
        const Facts facts = groups.at(i).value(group);
        for (auto fact = facts.begin(); fact != facts.end(); ++fact) {
            Values &values = names[steadyName(fact.key(), reports.at(i))];
            values.resize(reports.size());
            values[i] = fact.value();
        }
    }
    return names;
}

bool areAlike(const Values &values)
{
    return std::all_of(
        values.begin(), values.end(),
        [&values](const std::optional<QString> &value) { return value == values.first(); });
}

Values steadyValues(const Values &values, const QVector<Report> &reports)
{
    Values steady;
    for (int i = 0; i < values.size(); ++i)
        steady.append(values.at(i) ? std::optional(steadyValue(*values.at(i), reports.at(i)))
                                   : std::nullopt);
    return steady;
}

/// The reports that differ from what more than half of them have.
QVector<int> deviating(const Values &steady)
{
    if (steady.size() < 3)
        return {};
    const auto isCommon = [&steady](const std::optional<QString> &value) {
        return 2 * std::count(steady.begin(), steady.end(), value) > steady.size();
    };
    const auto common = std::find_if(steady.begin(), steady.end(), isCommon);
    QVector<int> others;
    for (int i = 0; common != steady.end() && i < steady.size(); ++i) {
        if (steady.at(i) != *common)
            others.append(i);
    }
    return others;
}

/// What a group of facts has in common that differ in the same way.
QString keyOf(const Ranked &ranked, const Values &steady)
{
    QString key = QString::number(ranked.rank);
    for (const std::optional<QString> &value : steady)
        key += value ? QStringLiteral("\n=") + *value : QStringLiteral("\n-");
    return key;
}

QVector<Ranked> differencesIn(const QString &group, const QMap<QString, Values> &names,
                              const QVector<Report> &reports)
{
    QMap<QString, QVector<Ranked>> alike;
    for (auto name = names.begin(); name != names.end(); ++name) {
        if (areAlike(*name) || isPassing(group, name.key()))
            continue;
        const Values steady = steadyValues(*name, reports);
        if (areAlike(steady))
            continue;
        const Importance importance = importanceOf(group, name.key());
        const Ranked ranked{
            {group, {name.key()}, *name, importance.weight, importance.reason, deviating(steady)},
            importance.rank};
        alike[keyOf(ranked, steady)].append(ranked);
    }
    QVector<Ranked> found;
    for (const QVector<Ranked> &same : qAsConst(alike)) {
        if (same.size() <= mostAlike) {
            found += same;
            continue;
        }
        Ranked one = same.first();
        for (int i = 1; i < same.size(); ++i)
            one.difference.names += same.at(i).difference.names;
        found.append(one);
    }
    return found;
}

/// The report that stands alone with more weight than all others that do.
std::optional<int> outlierAmong(const QVector<Ranked> &ranked, int count)
{
    QVector<int> scores(count);
    for (const Ranked &one : ranked) {
        if (one.difference.deviating.size() == 1)
            scores[one.difference.deviating.first()] += one.rank;
    }
    const auto most = std::max_element(scores.begin(), scores.end());
    const auto isMost = [most](int score) { return 2 * score > *most; };
    if (*most == 0 || std::count_if(scores.begin(), scores.end(), isMost) != 1)
        return {};
    return static_cast<int>(most - scores.begin());
}

} // namespace

Comparison compareReports(const QVector<Report> &reports)
{
    QVector<QMap<QString, Facts>> groups;
    QStringList names;
    for (const Report &report : reports) {
        groups.append(factsOf(report));
        names += groups.last().keys();
    }
    names.sort();
    names.removeDuplicates();
    QVector<Ranked> ranked;
    for (const QString &group : qAsConst(names))
        ranked += differencesIn(group, valuesByName(reports, groups, group), reports);
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const Ranked &one, const Ranked &other) { return one.rank > other.rank; });
    Comparison comparison;
    for (const Ranked &one : qAsConst(ranked))
        comparison.differences.append(one.difference);
    if (reports.size() > 2)
        comparison.outlier = outlierAmong(ranked, reports.size());
    return comparison;
}

} // namespace fleet
