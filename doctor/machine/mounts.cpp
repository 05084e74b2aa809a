#include "doctor/machine/mounts.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <iterator>

#include <unistd.h>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr char mountTable[] = "/proc/self/mountinfo";
constexpr qint64 largestTable = 4 * 1024 * 1024;
/// As many as the kernel follows.
constexpr int mostLinks = 40;
constexpr int octalDigits = 3;

QString textOf(const QByteArray &field)
{
    return QFile::decodeName(mountField(field));
}

bool isBelow(const QString &path, const QString &point)
{
    return point == QLatin1String("/") ||
           (path + QLatin1Char('/')).startsWith(point + QLatin1Char('/'));
}

/// Empty for what is no link.
QString linkTarget(const QString &path)
{
    QByteArray target(4096, '\0');
    const ssize_t length = ::readlink(QFile::encodeName(path).constData(), target.data(),
                                      static_cast<size_t>(target.size()));
    return length > 0 ? QFile::decodeName(target.left(static_cast<int>(length))) : QString();
}

/// @p path with the first link after @p start in the place of its name; unchanged without one.
QString withLinkFollowed(const QString &path, int start, const Machine &machine)
{
    for (int end = start; end < path.size();) {
        const int next = path.indexOf(QLatin1Char('/'), end + 1);
        const QString folder = path.left(end);
        end = next < 0 ? path.size() : next;
        const QString target = linkTarget(machine.located(path.left(end)));
        if (target.isEmpty())
            continue;
        const QString begin =
            target.startsWith(QLatin1Char('/')) ? QString() : folder + QLatin1Char('/');
        return QDir::cleanPath(begin + target + path.mid(end));
    }
    return path;
}

} // namespace

QList<QByteArray> mountLines(const Machine &machine)
{
    return readFile(machine.located(QLatin1String(mountTable)), largestTable)
        .content.value_or(QByteArray())
        .split('\n');
}

QByteArray mountField(const QByteArray &escaped)
{
    QByteArray plain;
    for (int index = 0; index < escaped.size(); ++index) {
        bool isNumber = false;
        const unsigned code = escaped.at(index) == '\\'
                                  ? escaped.mid(index + 1, octalDigits).toUInt(&isNumber, 8)
                                  : 0;
        plain.append(isNumber ? static_cast<char>(code) : escaped.at(index));
        index += isNumber ? octalDigits : 0;
    }
    return plain;
}

bool Mount::mayHang() const
{
    constexpr const char *begins[] = {"nfs", "cifs", "smb", "fuse.", "autofs", "ceph", "9p", "afs"};
    return std::any_of(std::begin(begins), std::end(begins),
                       [this](const char *begin) { return type.startsWith(QLatin1String(begin)); });
}

QVector<Mount> mountsOf(const Machine &machine)
{
    QVector<Mount> mounts;
    const QList<QByteArray> lines = mountLines(machine);
    for (const QByteArray &line : lines) {
        // See proc(5): ID, parent, device, root, point, options, optional fields, "-", type,
        // source.
        const QList<QByteArray> fields = line.split(' ');
        const int dash = fields.indexOf("-");
        if (dash < 6)
            continue;
        mounts.append({textOf(fields.value(4)), QString::fromUtf8(fields.value(dash + 1)),
                       textOf(fields.value(dash + 2)),
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

MountTable::MountTable(const Machine &machine) : m_machine(machine), m_mounts(mountsOf(machine))
{
    m_home = reachedBy(machine.home());
}

const Mount *MountTable::reachedBy(const QString &path) const
{
    QString place = QDir::cleanPath(path);
    const Mount *mount = as(place);
    for (int links = 0; links < mostLinks && mount != nullptr && isNear(*mount); ++links) {
        // No name of a mount's point is a link.
        const int start = mount->point == QLatin1String("/") ? 0 : mount->point.size();
        const QString next = withLinkFollowed(place, start, m_machine);
        if (next == place)
            break;
        place = next;
        mount = as(place);
    }
    return mount;
}

bool MountTable::areAllNear() const
{
    return std::all_of(m_mounts.begin(), m_mounts.end(),
                       [this](const Mount &mount) { return isNear(mount); });
}

} // namespace doctor
