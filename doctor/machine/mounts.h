#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

#include "doctor/machine/machine.h"

namespace doctor {

/// The lines of /proc/self/mountinfo, see proc(5); nothing of the mounts is touched.
QList<QByteArray> mountLines(const Machine &machine);

/// A field of such a line as it is meant: blanks and some other characters stand as "\040".
QByteArray mountField(const QByteArray &escaped);

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

/// The mounts of a machine, and which of them can be touched without waiting for a server.
class MountTable
{
public:
    explicit MountTable(const Machine &machine);
    // A member points into another one.
    Q_DISABLE_COPY(MountTable)

    /// As mountOf().
    const Mount *as(const QString &path) const { return mountOf(path, m_mounts); }
    /// The one that @p path leads to through links; what is not near is not touched for that.
    const Mount *reachedBy(const QString &path) const;
    /// Whether touching it cannot hang, or the home is there too: then all programs wait as well.
    bool isNear(const Mount &mount) const { return &mount == m_home || !mount.mayHang(); }
    bool areAllNear() const;

private:
    const Machine &m_machine;
    const QVector<Mount> m_mounts;
    const Mount *m_home = nullptr;
};

} // namespace doctor
