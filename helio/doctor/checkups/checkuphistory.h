#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <QVector>

namespace helio {

/// What whole check-ups have found, as long as it stayed the same.
struct Checkup
{
    /// The first and the last check-up with this outcome.
    QDateTime since;
    QDateTime until;
    /// Ids of the checks that found something, that found nothing, and that failed; sorted.
    QStringList found;
    QStringList well;
    QStringList failed;
};

/// How a check-up compares with the one before.
struct CheckupChange
{
    /// Since when the outcome is what it is now.
    QDateTime since;
    /// When the check-up before was made; invalid for the first.
    QDateTime last;
    /// Checks that found something then and nothing now, and those that found something only now.
    QStringList fixed;
    QStringList appeared;
    /// Why it could not be kept, for people; empty if it was.
    QString problem;
};

/// The check-ups of this user, kept in a private file. One with the same outcome as the one before
/// only moves its end. A file that is damaged counts as empty, and is replaced.
class CheckupHistory
{
public:
    explicit CheckupHistory(const QString &file = defaultFile()) : m_file(file) {}

    /// Beside the journal of repairs.
    static QString defaultFile();

    /// The oldest first; times in ascending order.
    QVector<Checkup> read() const;
    /// Compares with the last one, then keeps it. @p checkup has `until` alone.
    CheckupChange add(Checkup checkup) const;

private:
    QString m_file;
};

/// As pages get it: {"since", "until", "found", "failed"}.
QJsonObject checkupLine(const Checkup &checkup);
/// Adds "since", "last", "fixed", "new" and "unkept" to what a page is told of a check-up.
void addChange(const CheckupChange &change, QJsonObject &line);

} // namespace helio
