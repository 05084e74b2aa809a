#include "fleet/report/report.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "doctor/machine/filereading.h"
#include "texts/texts.h"

namespace fleet {

namespace {

constexpr int formatVersion = 1;
constexpr qint64 largestFile = 64 * 1024 * 1024;
constexpr int mostFacts = 200000;
constexpr int mostFindings = 10000;
constexpr int longestText = 4096;

QString textOf(const QJsonValue &value)
{
    if (value.isDouble())
        return QString::number(value.toDouble(), 'g', 15);
    if (value.isBool())
        return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    return value.toString().left(longestText);
}

QString textIn(const QJsonObject &object, const char *name)
{
    return textOf(object.value(QLatin1String(name)));
}

QMap<QString, Facts> groupsOf(const QJsonObject &object)
{
    QMap<QString, Facts> groups;
    int count = 0;
    for (auto group = object.begin(); group != object.end(); ++group) {
        const QJsonObject facts = group.value().toObject();
        Facts &kept = groups[group.key().left(longestText)];
        for (auto fact = facts.begin(); fact != facts.end() && count < mostFacts; ++fact, ++count)
            kept.insert(fact.key().left(longestText), textOf(fact.value()));
    }
    return groups;
}

QVector<ReportedFinding> findingsOf(const QJsonArray &array)
{
    QVector<ReportedFinding> findings;
    for (const QJsonValue &value : array) {
        const QJsonObject finding = value.toObject();
        if (findings.size() < mostFindings && !finding.isEmpty())
            findings.append(
                {textIn(finding, "check"), textIn(finding, "state"), textIn(finding, "text")});
    }
    return findings;
}

QStringList textsOf(const QJsonArray &array)
{
    QStringList texts;
    for (const QJsonValue &value : array) {
        if (texts.size() < mostFindings)
            texts.append(textOf(value));
    }
    return texts;
}

} // namespace

QJsonObject reportObject(const Report &report)
{
    QJsonObject groups;
    for (auto group = report.groups.begin(); group != report.groups.end(); ++group) {
        QJsonObject facts;
        for (auto fact = group->begin(); fact != group->end(); ++fact)
            facts.insert(fact.key(), fact.value());
        groups.insert(group.key(), facts);
    }
    QJsonArray findings;
    for (const ReportedFinding &finding : report.findings)
        findings.append(QJsonObject{{QStringLiteral("check"), finding.check},
                                    {QStringLiteral("state"), finding.state},
                                    {QStringLiteral("text"), finding.text}});
    return {{QStringLiteral("type"), QStringLiteral("report")},
            {QStringLiteral("version"), formatVersion},
            {QStringLiteral("host"), report.host},
            {QStringLiteral("user"), report.user},
            {QStringLiteral("home"), report.home},
            {QStringLiteral("made"), report.made},
            {QStringLiteral("facts"), groups},
            {QStringLiteral("findings"), findings},
            {QStringLiteral("unknown"), QJsonArray::fromStringList(report.unknown)}};
}

ReadReport reportFromJson(const QByteArray &json)
{
    QJsonParseError error{};
    const QJsonObject object = QJsonDocument::fromJson(json, &error).object();
    if (error.error != QJsonParseError::NoError)
        return {{}, texts::tr("it is not JSON: %1").arg(error.errorString())};
    if (object.value(QStringLiteral("type")) != QStringLiteral("report"))
        return {{}, texts::tr("it is not a report")};
    const int version = object.value(QStringLiteral("version")).toInt();
    if (version != formatVersion)
        return {{},
                texts::tr("its version is %1, this program reads version %2")
                    .arg(version)
                    .arg(formatVersion)};
    Report report;
    report.host = textIn(object, "host");
    report.user = textIn(object, "user");
    report.home = textIn(object, "home");
    report.made = textIn(object, "made");
    report.groups = groupsOf(object.value(QStringLiteral("facts")).toObject());
    report.findings = findingsOf(object.value(QStringLiteral("findings")).toArray());
    report.unknown = textsOf(object.value(QStringLiteral("unknown")).toArray());
    return {report, {}};
}

ReadReport reportFromFile(const QString &path)
{
    const doctor::FileContent file = doctor::readFile(path, largestFile);
    return file.content ? reportFromJson(*file.content) : ReadReport{{}, file.problem};
}

} // namespace fleet
