#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <mutex>

#include "doctor/machine/deadline.h"
#include "doctor/machine/filereading.h"
#include "doctor/machine/machine.h"
#include "doctor/why/open/open.h"
#include "suites/installation.h"

namespace doctor {

/// A process of this machine, as /proc tells.
struct RunningProcess
{
    qint64 id = 0;
    QString
        name; ///< of its program's file; for another user's process the short name of the kernel
    QString program;   ///< path of its file, if it may be read
    quint64 start = 0; ///< field 22 of /proc/PID/stat
    uid_t user = 0;
};

struct InstalledPackage
{
    QString version;
    QString manager; ///< "dpkg" or "rpm"
};

/// Read once and shared by all probes of a run.
class Facts
{
public:
    const QVector<RunningProcess> &processes(const Machine &machine);
    /// Of dpkg, by name.
    const QHash<QString, InstalledPackage> &debianPackages(const Machine &machine);
    /// Lower-case family names of the installed fonts, with the path of one file each.
    const QHash<QString, QString> &fontFamilies(const Machine &machine, const Deadline &deadline);
    /// Of all suites, by the suite's id.
    const QHash<QString, QVector<suites::Installation>> &installations(const Machine &machine,
                                                                       const Deadline &deadline);
    /// What opens a type, as OpenQuestion::byGio() has it.
    Opening opening(const Machine &machine, const QString &type);
    /// A regular file of at most 16 MiB as readFile() has it. Many checks look into the same few
    /// files; what all of them together take is bounded.
    FileContent file(const Machine &machine, const QString &path);

private:
    struct KeptFile
    {
        std::once_flag read;
        FileContent file;
    };

    std::once_flag m_processesRead;
    QVector<RunningProcess> m_processes;
    std::once_flag m_packagesRead;
    QHash<QString, InstalledPackage> m_packages;
    std::once_flag m_fontsRead;
    QHash<QString, QString> m_fonts;
    std::once_flag m_installationsFound;
    QHash<QString, QVector<suites::Installation>> m_installations;
    /// It keeps the desktop entries that it has read.
    std::mutex m_openMutex;
    std::unique_ptr<OpenQuestion> m_openQuestion;
    std::mutex m_filesMutex;
    QHash<QString, std::shared_ptr<KeptFile>> m_files;
    qint64 m_keptBytes = 0;
};

} // namespace doctor
