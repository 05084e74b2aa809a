#include "helio/doctor/checkups/checkuphistory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLockFile>
#include <QSaveFile>

#include <algorithm>
#include <optional>

#include "doctor/journal/journal.h"
#include "doctor/machine/filereading.h"
#include "texts/texts.h"

namespace helio {

namespace {

constexpr char fileName[] = "checkups.json";
/// As many changes as somebody looks back at; about 100 KiB.
constexpr int mostCheckups = 50;
/// Names in a check-up; more than there are checks.
constexpr int mostChecks = 1000;
constexpr qint64 largestFile = 1024 * 1024;
constexpr int lockMs = 2000;

QString timeText(const QDateTime &time)
{
    return time.isValid() ? time.toUTC().toString(Qt::ISODate) : QString();
}

QStringList namesOf(const QJsonValue &list)
{
    QStringList names;
    for (const QJsonValue name : list.toArray()) {
        if (name.isString() && names.size() < mostChecks)
            names.append(name.toString());
    }
    names.sort();
    return names;
}

std::optional<Checkup> checkupOf(const QJsonObject &object)
{
    const auto time = [&object](const char *name) {
        return QDateTime::fromString(object.value(QLatin1String(name)).toString(), Qt::ISODate);
    };
    Checkup checkup;
    checkup.since = time("since");
    checkup.until = time("until");
    if (!checkup.since.isValid() || !checkup.until.isValid() || checkup.until < checkup.since)
        return std::nullopt;
    checkup.found = namesOf(object.value(QLatin1String("found")));
    checkup.well = namesOf(object.value(QLatin1String("well")));
    checkup.failed = namesOf(object.value(QLatin1String("failed")));
    return checkup;
}

QJsonObject keptObject(const Checkup &checkup)
{
    QJsonObject object = checkupLine(checkup);
    object.insert(QStringLiteral("well"), QJsonArray::fromStringList(checkup.well));
    return object;
}

QString writePrivately(const QString &path, const QByteArray &content)
{
    if (!QDir().mkpath(QFileInfo(path).path()))
        return texts::tr("The check-up cannot be kept in %1.").arg(path);
    QLockFile lock(path + QStringLiteral(".lock"));
    if (!lock.tryLock(lockMs))
        return texts::tr("The check-up cannot be kept in %1.").arg(path);
    QSaveFile file(path);
    // Before there is anything in it to read.
    if (file.open(QIODevice::WriteOnly) &&
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
        file.write(content) == content.size() && file.commit())
        return {};
    return texts::tr("The check-up cannot be kept in %1.").arg(path);
}

QStringList commonOf(const QStringList &first, const QStringList &second)
{
    QStringList common;
    std::copy_if(first.begin(), first.end(), std::back_inserter(common),
                 [&second](const QString &name) { return second.contains(name); });
    return common;
}

} // namespace

QString CheckupHistory::defaultFile()
{
    return QFileInfo(doctor::Journal::defaultDirectory()).path() + QLatin1Char('/') +
           QLatin1String(fileName);
}

QVector<Checkup> CheckupHistory::read() const
{
    QVector<Checkup> checkups;
    const QByteArray content = doctor::readFile(m_file, largestFile).content.value_or(QByteArray());
    for (const QJsonValue value : QJsonDocument::fromJson(content).array()) {
        const std::optional<Checkup> checkup = checkupOf(value.toObject());
        const bool isLater =
            checkup && (checkups.isEmpty() || checkups.last().until <= checkup->since);
        if (isLater)
            checkups.append(*checkup);
    }
    return checkups.mid(std::max(0, int(checkups.size()) - mostCheckups));
}

CheckupChange CheckupHistory::add(Checkup checkup) const
{
    for (QStringList *names : {&checkup.found, &checkup.well, &checkup.failed})
        names->sort();
    checkup.since = checkup.until;
    QVector<Checkup> checkups = read();
    CheckupChange change;
    // One from the future was made before somebody set the clock.
    while (!checkups.isEmpty() && checkups.last().until > checkup.until)
        checkups.removeLast();
    if (!checkups.isEmpty()) {
        const Checkup before = checkups.last();
        change.last = before.until;
        change.fixed = commonOf(before.found, checkup.well);
        for (const QString &name : qAsConst(checkup.found)) {
            if (!before.found.contains(name))
                change.appeared.append(name);
        }
        if (before.found == checkup.found && before.failed == checkup.failed) {
            checkup.since = before.since;
            checkups.removeLast();
        }
    }
    change.since = checkup.since;
    checkups.append(checkup);
    QJsonArray kept;
    for (int index = std::max(0, int(checkups.size()) - mostCheckups); index < checkups.size();
         ++index)
        kept.append(keptObject(checkups.at(index)));
    change.problem = writePrivately(m_file, QJsonDocument(kept).toJson(QJsonDocument::Compact));
    return change;
}

QJsonObject checkupLine(const Checkup &checkup)
{
    return {{QStringLiteral("since"), timeText(checkup.since)},
            {QStringLiteral("until"), timeText(checkup.until)},
            {QStringLiteral("found"), QJsonArray::fromStringList(checkup.found)},
            {QStringLiteral("failed"), QJsonArray::fromStringList(checkup.failed)}};
}

void addChange(const CheckupChange &change, QJsonObject &line)
{
    line.insert(QStringLiteral("since"), timeText(change.since));
    line.insert(QStringLiteral("last"), timeText(change.last));
    line.insert(QStringLiteral("fixed"), QJsonArray::fromStringList(change.fixed));
    line.insert(QStringLiteral("new"), QJsonArray::fromStringList(change.appeared));
    line.insert(QStringLiteral("unkept"), change.problem);
}

} // namespace helio
