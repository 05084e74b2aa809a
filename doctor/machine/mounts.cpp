#include "doctor/machine/mounts.h"

#include <QFile>

#include <algorithm>
#include <iterator>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr char mountTable[] = "/proc/self/mountinfo";
constexpr qint64 largestTable = 4 * 1024 * 1024;

/// Blanks stand as "\040" in the table.
QString unescaped(const QByteArray &text)
{
    QByteArray plain = text;
    plain.replace("\\040", " ")
        .replace("\\011", "\t")
        .replace("\\012", "\n")
        .replace("\\134", "\\");
    return QFile::decodeName(plain);
}

bool isBelow(const QString &path, const QString &point)
{
    return point == QLatin1String("/") ||
           (path + QLatin1Char('/')).startsWith(point + QLatin1Char('/'));
}

} // namespace

bool Mount::mayHang() const
{
    constexpr const char *begins[] = {"nfs", "cifs", "smb", "fuse.", "autofs", "ceph", "9p", "afs"};
    return std::any_of(std::begin(begins), std::end(begins),
                       [this](const char *begin) { return type.startsWith(QLatin1String(begin)); });
}

QVector<Mount> mountsOf(const Machine &machine)
{
    QVector<Mount> mounts;
    const FileContent table = readFile(machine.located(QLatin1String(mountTable)), largestTable);
    for (const QByteArray &line : table.content.value_or(QByteArray()).split('\n')) {
        // See proc(5): ID, parent, device, root, point, options, optional fields, "-", type,
        // source.
        const QList<QByteArray> fields = line.split(' ');
        const int dash = fields.indexOf("-");
        if (dash < 6)
            continue;
        mounts.append({unescaped(fields.value(4)), QString::fromUtf8(fields.value(dash + 1)),
                       unescaped(fields.value(dash + 2)),
                       QString::fromUtf8(fields.value(5)).split(QLatin1Char(','))});
    }
    return mounts;
}

const Mount *mountOf(const QString &path, const QVector<Mount> &mounts)
{
    const Mount *nearest = nullptr;
    for (const Mount &mount : mounts) {
        if (isBelow(path, mount.point) &&
            (nearest == nullptr || mount.point.size() >= nearest->point.size()))
            nearest = &mount;
    }
    return nearest;
}

} // namespace doctor
