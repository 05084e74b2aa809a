#include "helio/doctor/doctorlines.h"

#include <QJsonArray>

#include "helio/doctor/doctorwords.h"
#include "helio/doctor/verifiedrepair.h"

namespace helio {

namespace {

QJsonObject typed(const char *type)
{
    return {{QStringLiteral("type"), QLatin1String(type)}};
}

QJsonObject placeObject(const doctor::Place &place)
{
    QJsonObject object;
    if (!place.path.isEmpty())
        object.insert(QStringLiteral("path"), place.path);
    if (place.line > 0)
        object.insert(QStringLiteral("line"), place.line);
    if (place.process > 0)
        object.insert(QStringLiteral("process"), place.process);
    return object;
}

QString octal(mode_t mode)
{
    return QStringLiteral("%1").arg(mode, 4, 8, QLatin1Char('0'));
}

QString undoneName(doctor::JournalResult::Outcome outcome)
{
    if (outcome == doctor::JournalResult::Outcome::Undone)
        return QStringLiteral("undone");
    return outcome == doctor::JournalResult::Outcome::Conflict ? QStringLiteral("conflict")
                                                               : QStringLiteral("failed");
}

} // namespace

QJsonObject findingLine(const doctor::Finding &finding)
{
    QJsonArray where;
    for (const doctor::Place &place : finding.where)
        where.append(placeObject(place));
    QJsonObject values;
    for (auto value = finding.values.begin(); value != finding.values.end(); ++value)
        values.insert(value.key(), value.value());
    QJsonObject line = typed("finding");
    line.insert(QStringLiteral("check"), finding.check);
    line.insert(QStringLiteral("state"), nameOf(finding.state));
    line.insert(QStringLiteral("text"), finding.text);
    line.insert(QStringLiteral("where"), where);
    line.insert(QStringLiteral("values"), values);
    line.insert(QStringLiteral("repairs"), QJsonArray::fromStringList(finding.repairs));
    return line;
}

QJsonObject checkLine(const doctor::CheckResult &result)
{
    QJsonObject line = typed("check");
    line.insert(QStringLiteral("check"), result.check);
    line.insert(QStringLiteral("result"), nameOf(result.outcome));
    line.insert(QStringLiteral("seconds"), result.seconds);
    line.insert(QStringLiteral("reason"), result.reason);
    return line;
}

QJsonObject listedLine(const doctor::CheckDefinition &check, const QString &locale)
{
    QJsonObject line = typed("listed");
    line.insert(QStringLiteral("check"), check.id);
    line.insert(QStringLiteral("title"), check.title.inLanguage(locale));
    line.insert(QStringLiteral("cost"), check.cost == doctor::CheckDefinition::Cost::Quick
                                            ? QStringLiteral("quick")
                                            : QStringLiteral("slow"));
    line.insert(QStringLiteral("file"), check.file);
    QJsonArray repairs;
    QJsonObject titles;
    for (const doctor::RepairDefinition &repair : check.repairs) {
        repairs.append(repair.id);
        titles.insert(repair.id, repair.title.inLanguage(locale));
    }
    line.insert(QStringLiteral("repairs"), repairs);
    line.insert(QStringLiteral("repairTitles"), titles);
    return line;
}

QJsonObject mistakeLine(const doctor::FileProblem &problem)
{
    QJsonObject line = typed("mistake");
    line.insert(QStringLiteral("file"), problem.file);
    line.insert(QStringLiteral("line"), problem.mistake.line);
    line.insert(QStringLiteral("column"), problem.mistake.column);
    line.insert(QStringLiteral("message"), problem.mistake.message);
    return line;
}

QJsonObject changeLine(const QString &repair, const doctor::Change &change)
{
    QJsonObject line = typed("change");
    line.insert(QStringLiteral("repair"), repair);
    line.insert(QStringLiteral("kind"), nameOf(change.kind));
    line.insert(QStringLiteral("path"), change.path);
    line.insert(QStringLiteral("diff"), diffOf(change));
    line.insert(QStringLiteral("command"), commandLineOf(change));
    line.insert(QStringLiteral("needs"), change.kind == doctor::Change::Kind::Command
                                             ? QStringLiteral("administrator")
                                             : QStringLiteral("user"));
    if (!change.target.isEmpty())
        line.insert(QStringLiteral("target"), change.target);
    if (change.mode)
        line.insert(QStringLiteral("mode"), octal(*change.mode));
    if (change.owner)
        line.insert(QStringLiteral("owner"), static_cast<qint64>(*change.owner));
    if (change.process > 0)
        line.insert(QStringLiteral("process"), change.process);
    return line;
}

QJsonArray changeLines(const QString &repair, const QVector<doctor::Change> &changes)
{
    QJsonArray lines;
    for (const doctor::Change &change : changes)
        lines.append(changeLine(repair, change));
    return lines;
}

QJsonObject repairLine(const RepairOutcome &outcome)
{
    QJsonObject line = typed("repair");
    line.insert(QStringLiteral("check"), outcome.check);
    line.insert(QStringLiteral("repair"), outcome.repair);
    line.insert(QStringLiteral("result"), nameOf(outcome.result));
    line.insert(QStringLiteral("journal"), outcome.journal);
    line.insert(QStringLiteral("reason"), outcome.reason);
    return line;
}

QJsonObject entryLine(const doctor::JournalEntry &entry)
{
    QJsonObject line = typed("entry");
    line.insert(QStringLiteral("journal"), entry.number);
    line.insert(QStringLiteral("time"), entry.time.toUTC().toString(Qt::ISODate));
    line.insert(QStringLiteral("check"), entry.check);
    line.insert(QStringLiteral("repair"), entry.repair);
    line.insert(QStringLiteral("state"), nameOf(entry.state));
    line.insert(QStringLiteral("paths"), QJsonArray::fromStringList(entry.paths));
    return line;
}

QJsonObject undoneLine(int journal, const doctor::JournalResult &result)
{
    QJsonObject line = typed("undone");
    line.insert(QStringLiteral("journal"), journal);
    line.insert(QStringLiteral("result"), undoneName(result.outcome));
    line.insert(QStringLiteral("kept"), QJsonArray::fromStringList(result.kept));
    line.insert(QStringLiteral("reason"), result.reason);
    return line;
}

QJsonObject noteLine(const QString &text)
{
    QJsonObject line = typed("note");
    line.insert(QStringLiteral("text"), text);
    return line;
}

QJsonObject summaryLine(int checks, int findings, int failed)
{
    QJsonObject line = typed("summary");
    line.insert(QStringLiteral("checks"), checks);
    line.insert(QStringLiteral("findings"), findings);
    line.insert(QStringLiteral("failed"), failed);
    return line;
}

} // namespace helio
