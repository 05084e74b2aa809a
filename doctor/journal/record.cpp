#include "doctor/journal/record.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

#include "doctor/journal/stepjson.h"

namespace doctor {

namespace {

constexpr int formatVersion = 1;
constexpr char versionKey[] = "version";
constexpr char beginKey[] = "begin";
constexpr char reachedKey[] = "reached";
constexpr char endKey[] = "end";
constexpr char applyWord[] = "apply";
constexpr char undoWord[] = "undo";
constexpr char watchWord[] = "watch";
constexpr char adoptWord[] = "adopt";
constexpr char checkKey[] = "check";
constexpr char repairKey[] = "repair";
constexpr char timeKey[] = "time";
constexpr char stepsKey[] = "steps";
constexpr const char *endWords[] = {"", "done", "clean", "back"};

QByteArray checksum(const QByteArray &json)
{
    return QCryptographicHash::hash(json, QCryptographicHash::Sha256).toHex();
}

/// The line feed in front ends a line that was cut off.
QByteArray lineOf(const QJsonObject &object)
{
    const QByteArray json = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return '\n' + checksum(json) + ' ' + json + '\n';
}

/// Nothing if the line is not whole.
std::optional<QJsonObject> objectOf(const QByteArray &line)
{
    const int space = line.indexOf(' ');
    const QByteArray json = line.mid(space + 1);
    if (space < 0 || line.left(space) != checksum(json))
        return {};
    const QJsonDocument document = QJsonDocument::fromJson(json);
    return document.isObject() ? std::make_optional(document.object()) : std::nullopt;
}

const char *wordOf(const Action &action)
{
    if (action.isWatch)
        return watchWord;
    if (action.isUndo)
        return undoWord;
    return action.end == Action::End::Clean ? adoptWord : applyWord;
}

/// Whether an action may follow those of the record.
bool isInOrder(const Action &action, const Record &record)
{
    if (action.isUndo)
        return record.isApplied();
    if (action.end == Action::End::Clean)
        return record.actions.size() == 1 && record.actions.first().isWatch;
    return record.actions.isEmpty();
}

bool readBegin(const QJsonObject &object, Record &record)
{
    const QString word = object.value(QLatin1String(beginKey)).toString();
    Action action;
    action.isUndo = word == QLatin1String(undoWord);
    action.isWatch = word == QLatin1String(watchWord);
    if (word == QLatin1String(adoptWord))
        action.end = Action::End::Clean;
    action.time = object.value(QLatin1String(timeKey)).toVariant().toLongLong();
    const QJsonArray steps = object.value(QLatin1String(stepsKey)).toArray();
    for (const QJsonValue &value : steps) {
        const std::optional<TreeStep> step = stepOf(value.toObject());
        if (!step)
            return false;
        action.steps.append(*step);
    }
    if (word != QLatin1String(wordOf(action)) || !isInOrder(action, record) ||
        object.value(QLatin1String(versionKey)).toInt() != formatVersion)
        return false;
    if (action.end == Action::End::Clean)
        record.actions.clear();
    record.check = object.value(QLatin1String(checkKey)).toString();
    record.repair = object.value(QLatin1String(repairKey)).toString();
    record.actions.append(action);
    return true;
}

bool readReached(const QJsonObject &object, Record &record)
{
    const int reached = object.value(QLatin1String(reachedKey)).toInt(-1);
    if (record.actions.isEmpty() || record.actions.last().isWatch)
        return false;
    Action &action = record.actions.last();
    // A mark that all was done may have been written but not synced; then all is taken back.
    const bool isOpen = action.end == Action::End::None || action.end == Action::End::Done;
    if (!isOpen || reached < 0 || reached > action.steps.size())
        return false;
    action.reached = reached;
    action.end = Action::End::None;
    return true;
}

bool readEnd(const QJsonObject &object, Record &record)
{
    const QByteArray word = object.value(QLatin1String(endKey)).toString().toLatin1();
    const auto *const found = std::find(std::begin(endWords) + 1, std::end(endWords), word);
    if (found == std::end(endWords) || record.actions.isEmpty() || record.actions.last().isWatch)
        return false;
    Action &action = record.actions.last();
    const auto end = Action::End(found - std::begin(endWords));
    const bool isOpen = action.end == Action::End::None || action.end == Action::End::Done;
    // A mark may stand twice: the first was written, and then not synced.
    const bool isInOrder =
        action.end == end || (end == Action::End::Clean ? action.end == Action::End::Done : isOpen);
    if (!isInOrder)
        return false;
    action.end = end;
    return true;
}

bool readLine(const QJsonObject &object, Record &record)
{
    if (object.contains(QLatin1String(beginKey)))
        return readBegin(object, record);
    if (object.contains(QLatin1String(reachedKey)))
        return readReached(object, record);
    return readEnd(object, record);
}

} // namespace

bool Record::isApplied() const
{
    return !isDamaged && !actions.isEmpty() && actions.first().isDone() && !isUndone() &&
           actions.last().end != Action::End::None;
}

bool Record::isUndone() const
{
    return std::any_of(actions.begin(), actions.end(),
                       [](const Action &action) { return action.isUndo && action.isDone(); });
}

const Action *Record::openAction() const
{
    const bool isOpen =
        !isDamaged && !actions.isEmpty() &&
        (actions.last().end == Action::End::None || actions.last().end == Action::End::Done);
    return isOpen ? &actions.last() : nullptr;
}

QByteArray beginLine(const Record &record, const Action &action)
{
    QJsonArray steps;
    for (const TreeStep &step : action.steps)
        steps.append(jsonOf(step));
    return lineOf({{QLatin1String(versionKey), formatVersion},
                   {QLatin1String(beginKey), QLatin1String(wordOf(action))},
                   {QLatin1String(checkKey), record.check},
                   {QLatin1String(repairKey), record.repair},
                   {QLatin1String(timeKey), QString::number(action.time)},
                   {QLatin1String(stepsKey), steps}});
}

QByteArray reachedLine(int reached)
{
    return lineOf({{QLatin1String(reachedKey), reached}});
}

int roomForLines(const Action &action)
{
    constexpr int endLines = 2;
    return reachedLine(action.steps.size()).size() * 2 * action.steps.size() +
           endLine(Action::End::Clean).size() * endLines;
}

QByteArray endLine(Action::End end)
{
    return lineOf({{QLatin1String(endKey), QLatin1String(endWords[int(end)])}});
}

std::optional<Record> parsedRecord(const QByteArray &content)
{
    Record record;
    const QList<QByteArray> lines = content.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const std::optional<QJsonObject> object = objectOf(lines[i]);
        if (object && !readLine(*object, record))
            record.isDamaged = true;
        // Other than a line that was cut off, this one was written and later spoilt.
        if (!object && !lines[i].isEmpty() && i + 1 < lines.size() && record.actions.isEmpty())
            record.isDamaged = true;
    }
    if (record.actions.isEmpty() && !record.isDamaged)
        return {};
    return record;
}

} // namespace doctor
