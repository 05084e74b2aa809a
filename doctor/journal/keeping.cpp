#include "doctor/journal/keeping.h"

#include <QDateTime>

#include <optional>

#include "doctor/journal/store.h"

namespace doctor {

QVector<Record> readAll(const Store &store)
{
    QVector<Record> records;
    const QVector<int> numbers = store.numbers();
    for (const int number : numbers) {
        if (const std::optional<Record> record = store.read(number))
            records.append(*record);
    }
    return records;
}

void removeOld(Store &store, int newest, const JournalLimits &limits)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const qint64 oldest =
        now - std::chrono::duration_cast<std::chrono::milliseconds>(limits.age).count();
    const QVector<Record> records = readAll(store);
    qint64 size = 0;
    for (const Record &record : records)
        size += store.size(record.number);
    for (const Record &record : records) {
        const bool isFinished = !record.isDamaged && !record.openAction();
        const bool isOld = isFinished && record.actions.last().time < oldest;
        if (!isFinished || record.number == newest || (!isOld && size <= limits.size))
            continue;
        const qint64 freed = store.size(record.number);
        if (!store.remove(record.number))
            size -= freed;
    }
}

} // namespace doctor
