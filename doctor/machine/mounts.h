#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include "doctor/machine/machine.h"

namespace doctor {

/// A mount as the kernel's table has it.
struct Mount
{
    QString point;
    QString type;
    QString source;
    QStringList options;

    /// Whether a server or another program stands behind it: whoever touches one whose server is
    /// away waits for it, perhaps for ever.
    bool mayHang() const;
};

/// From /proc/self/mountinfo, in its order; nothing of the mounts is touched.
QVector<Mount> mountsOf(const Machine &machine);

/// The one that @p path lies in as it is written; of those on one point the last is seen. Null if
/// the table has none.
const Mount *mountOf(const QString &path, const QVector<Mount> &mounts);

} // namespace doctor
