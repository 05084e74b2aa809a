#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include <optional>

#include "doctor/machine/machine.h"
#include "doctor/model/plan.h"

namespace doctor {

/// Collects the changes of a repair. It knows what files will hold after the changes so far, and
/// turns what the user may not change into commands for the administrator. Functions that return a
/// text say why something cannot be done; empty if it can.
class Draft
{
public:
    /// @p earlier is what will have been done before, by other repairs.
    explicit Draft(const Machine &machine, const QVector<Change> &earlier = {});

    const Machine &machine() const { return m_machine; }
    const QVector<Change> &changes() const { return m_changes; }

    /// What the file will hold; nothing if it cannot be read or will not exist.
    std::optional<QByteArray> content(const QString &path) const;
    /// Whether something will stand there, a broken link too.
    bool exists(const QString &path) const;

    /// Gives a file new content, or makes it; nothing where it holds that already.
    QString write(const QString &path, const QByteArray &content,
                  std::optional<mode_t> mode = std::nullopt);
    QString remove(const QString &path);
    QString move(const QString &path, const QString &target);
    QString makeDirectory(const QString &path, mode_t mode);
    QString makeLink(const QString &path, const QString &target);
    QString changeRights(const QString &path, std::optional<mode_t> mode,
                         std::optional<uid_t> owner, std::optional<gid_t> group);
    QString end(qint64 process);
    void show(const QStringList &command);

private:
    bool isDirectoryPlanned(const QString &located) const;
    void expect(const Change &earlier);
    QString followed(const QString &path) const;
    QString addWrite(const QString &path, const QByteArray &before, const QByteArray &after);

    const Machine &m_machine;
    QVector<Change> m_changes;
    QVector<Change> m_earlier;
    /// By path, for what is not as on the disk; nothing for what will be gone.
    QHash<QString, std::optional<QByteArray>> m_later;
};

} // namespace doctor
