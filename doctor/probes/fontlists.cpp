#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>

#include <sys/stat.h>

#include "doctor/machine/filereading.h"
#include "doctor/probes/kinds.h"

namespace doctor {

namespace {

constexpr int deepestFolder = 6;
constexpr int mostNames = 20'000;

/// When a file or folder was last written, in seconds; 0 if that is not known.
qint64 writtenAt(const QString &located)
{
    struct stat state;
    return stat(QFile::encodeName(located).constData(), &state) == 0 ? state.st_mtim.tv_sec : 0;
}

bool isFolder(const QString &located)
{
    struct stat state;
    return lstat(QFile::encodeName(located).constData(), &state) == 0 && S_ISDIR(state.st_mode);
}

/// The lists of a folder with fonts and of those below it, as fontconfig names them: the sum of the
/// folder's path, then processor and format. A changed folder is read again by fontconfig itself; a
/// font that is written over in its place changes no folder.
class FontLists
{
public:
    FontLists(const QString &kept, const Looking &looking)
        : m_kept(kept),
          m_looking(looking),
          m_names(namesIn(looking.machine.located(kept), mostNames).value_or(QStringList()))
    {
    }

    void read(const QString &folder, QVector<Observation> &seen, int depth = 0)
    {
        const QString located = m_looking.machine.located(folder);
        const QStringList names = namesIn(located, mostNames).value_or(QStringList());
        QString newest;
        qint64 newestAt = 0;
        for (const QString &name : names) {
            if (m_looking.deadline.isOver() || ++m_seen > mostNames)
                return;
            const QString path = folder + QLatin1Char('/') + name;
            if (isFolder(m_looking.machine.located(path))) {
                if (depth < deepestFolder)
                    read(path, seen, depth + 1);
                continue;
            }
            const qint64 at = writtenAt(m_looking.machine.located(path));
            // What will be written in the future would stay newer than any list.
            if (at > newestAt && at <= QDateTime::currentSecsSinceEpoch()) {
                newest = path;
                newestAt = at;
            }
        }
        compare(folder, newest, newestAt, seen);
    }

private:
    void compare(const QString &folder, const QString &newest, qint64 newestAt,
                 QVector<Observation> &seen) const
    {
        const QString sum = QString::fromLatin1(
            QCryptographicHash::hash(QFile::encodeName(folder), QCryptographicHash::Md5).toHex());
        const qint64 folderAt = writtenAt(m_looking.machine.located(folder));
        for (const QString &name : m_names) {
            if (!name.startsWith(sum + QLatin1Char('-')) ||
                !name.contains(QLatin1String(".cache-")))
                continue;
            const QString path = m_kept + QLatin1Char('/') + name;
            const qint64 listedAt = writtenAt(m_looking.machine.located(path));
            Observation one;
            one.where.append({path, 0, 0});
            one.values = {
                {QStringLiteral("path"), Value::ofText(path)},
                {QStringLiteral("folder"), Value::ofText(folder)},
                {QStringLiteral("newest"), Value::ofText(newest)},
                {QStringLiteral("stale"),
                 Value::ofFlag(listedAt > 0 && newestAt > listedAt && folderAt <= listedAt)}};
            seen.append(one);
        }
    }

    const QString m_kept;
    const Looking &m_looking;
    const QStringList m_names;
    int m_seen = 0;
};

Observed lookAtFontLists(const Arguments &arguments, const Looking &looking)
{
    const MeantPaths meant = meantPaths(arguments, "fontList", looking, false);
    Observed observed;
    observed.problem = meant.problem;
    FontLists lists(arguments.text("kept"), looking);
    for (const QString &folder : meant.paths)
        lists.read(folder, observed.seen);
    return observed;
}

constexpr Parameter parameters[] = {{"fontList", ParameterType::PathPattern, true},
                                    {"kept", ParameterType::Path, true}};
constexpr ProbeValue values[] = {{"path", ValueType::Text},
                                 {"folder", ValueType::Text},
                                 {"newest", ValueType::Text},
                                 {"stale", ValueType::Flag}};

} // namespace

const ProbeKind fontListKind{"fontList", parameters, values, &lookAtFontLists};

} // namespace doctor
