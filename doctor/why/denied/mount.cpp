#include "doctor/why/denied/mount.h"

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr char mountTable[] = "/proc/self/mountinfo";
constexpr qint64 largestTable = 4 * 1024 * 1024;
constexpr int octalDigits = 3;

/// Blanks and some other characters stand as "\040" in the table.
QByteArray unescaped(const QByteArray &text)
{
    QByteArray plain;
    for (int index = 0; index < text.size(); ++index) {
        bool isNumber = false;
        const unsigned code =
            text.at(index) == '\\' ? text.mid(index + 1, octalDigits).toUInt(&isNumber, 8) : 0;
        plain.append(isNumber ? static_cast<char>(code) : text.at(index));
        index += isNumber ? octalDigits : 0;
    }
    return plain;
}

} // namespace

Mount mountNumbered(quint64 number)
{
    const QByteArray table =
        readFile(QLatin1String(mountTable), largestTable).content.value_or(QByteArray());
    for (const QByteArray &line : table.split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        const int dash = fields.indexOf("-");
        if (dash >= 6 && fields.at(0).toULongLong() == number)
            return {unescaped(fields.at(4)), fields.value(dash + 1), fields.at(5).split(','),
                    fields.value(dash + 3).split(',')};
    }
    return {};
}

} // namespace doctor
