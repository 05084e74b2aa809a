#include "helio/ctl/fleet/comparisonlines.h"

#include <QJsonArray>

#include <algorithm>

#include "helio/doctor/doctorwords.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using fleet::Comparison;
using fleet::Difference;
using fleet::Report;
using fleet::Weight;
using helio::visible;

constexpr int mostNames = 5;
constexpr int longestValue = 160;
constexpr int letters = 26;

/// A, B, … Z, AA, AB, …
QString letterOf(int index)
{
    const QString last(QChar('A' + index % letters));
    return index < letters ? last : letterOf(index / letters - 1) + last;
}

QString nameOf(Weight weight)
{
    switch (weight) {
    case Weight::High:
        return QStringLiteral("high");
    case Weight::Medium:
        return QStringLiteral("medium");
    case Weight::Low:
        break;
    }
    return QStringLiteral("low");
}

QString textOf(Weight weight)
{
    switch (weight) {
    case Weight::High:
        return texts::tr("may well matter");
    case Weight::Medium:
        return texts::tr("may matter");
    case Weight::Low:
        break;
    }
    return texts::tr("seldom matters");
}

QString ownerOf(const Report &report)
{
    const QString host = report.host.isEmpty() ? texts::tr("(no name)") : report.host;
    return visible(report.user.isEmpty() ? host : texts::tr("%1, user %2").arg(host, report.user));
}

QString valueText(const std::optional<QString> &value)
{
    if (!value)
        return texts::tr("(not there)");
    if (value->isEmpty())
        return texts::tr("(empty)");
    const QString shown = visible(value->simplified());
    return shown.size() > longestValue ? shown.left(longestValue) + QChar(0x2026) : shown;
}

QString namesText(const Difference &difference)
{
    const QStringList &names = difference.names;
    const QString first = names.mid(0, mostNames).join(QStringLiteral(", "));
    return visible(names.size() <= mostNames
                       ? first
                       : texts::tr("%1 and %2 more").arg(first).arg(names.size() - mostNames));
}

/// Reports with the same value share a line.
QStringList valueLines(const Difference &difference)
{
    QStringList lines;
    QStringList shown;
    for (int i = 0; i < difference.values.size(); ++i) {
        const QString text = valueText(difference.values.at(i));
        const int same = shown.indexOf(text);
        if (same >= 0) {
            lines[same].insert(lines.at(same).indexOf(QStringLiteral(": ")),
                               QLatin1Char(' ') + letterOf(i));
            continue;
        }
        shown.append(text);
        lines.append(QStringLiteral("     %1: %2").arg(letterOf(i), text));
    }
    return lines;
}

} // namespace

QString comparisonText(const Comparison &comparison, const QVector<Report> &reports, bool all)
{
    QStringList lines;
    for (int i = 0; i < reports.size(); ++i)
        lines.append(texts::tr("%1: %2, made %3")
                         .arg(letterOf(i), ownerOf(reports.at(i)), visible(reports.at(i).made)));
    int number = 0;
    int left = 0;
    for (const Difference &difference : comparison.differences) {
        if (!all && difference.weight == Weight::Low) {
            ++left;
            continue;
        }
        lines.append(QStringLiteral("%1. %2: %3 (%4)")
                         .arg(QString::number(++number), visible(difference.group),
                              namesText(difference), textOf(difference.weight)));
        lines += valueLines(difference);
        lines.append(QStringLiteral("     ") + difference.reason);
    }
    if (comparison.differences.isEmpty())
        lines.append(texts::tr("Nothing differs."));
    if (left > 0)
        lines.append(texts::tr("%1 more seldom matter; --all shows them.").arg(left));
    if (comparison.outlier)
        lines.append(
            texts::tr("The one that differs from the others is %1: %2.")
                .arg(letterOf(*comparison.outlier), ownerOf(reports.at(*comparison.outlier))));
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QVector<QJsonObject> comparisonLines(const Comparison &comparison, const QVector<Report> &reports)
{
    QVector<QJsonObject> lines;
    for (int i = 0; i < reports.size(); ++i)
        lines.append(QJsonObject{{QStringLiteral("type"), QStringLiteral("compares")},
                                 {QStringLiteral("number"), i},
                                 {QStringLiteral("host"), reports.at(i).host},
                                 {QStringLiteral("user"), reports.at(i).user},
                                 {QStringLiteral("made"), reports.at(i).made}});
    for (const Difference &difference : comparison.differences) {
        QJsonArray values;
        for (const std::optional<QString> &value : difference.values)
            values.append(value ? QJsonValue(*value) : QJsonValue());
        QJsonArray deviating;
        for (const int index : difference.deviating)
            deviating.append(index);
        lines.append(
            QJsonObject{{QStringLiteral("type"), QStringLiteral("difference")},
                        {QStringLiteral("group"), difference.group},
                        {QStringLiteral("names"), QJsonArray::fromStringList(difference.names)},
                        {QStringLiteral("weight"), nameOf(difference.weight)},
                        {QStringLiteral("reason"), difference.reason},
                        {QStringLiteral("values"), values},
                        {QStringLiteral("deviating"), deviating}});
    }
    QJsonObject summary{{QStringLiteral("type"), QStringLiteral("compared")},
                        {QStringLiteral("reports"), reports.size()},
                        {QStringLiteral("differences"), comparison.differences.size()}};
    if (comparison.outlier)
        summary.insert(QStringLiteral("outlier"), *comparison.outlier);
    lines.append(summary);
    return lines;
}

} // namespace ctl
