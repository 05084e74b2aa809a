#include "doctor/why/denied/mount.h"

#include "doctor/machine/mounts.h"

namespace doctor {

NumberedMount mountNumbered(quint64 number)
{
    const QList<QByteArray> lines = mountLines({});
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.split(' ');
        const int dash = fields.indexOf("-");
        if (dash >= 6 && fields.at(0).toULongLong() == number)
            return {mountField(fields.at(4)), fields.value(dash + 1), fields.at(5).split(','),
                    fields.value(dash + 3).split(',')};
    }
    return {};
}

} // namespace doctor
