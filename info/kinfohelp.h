#pragma once

#include <QJsonObject>
#include <QObject>
#include <QStringList>
#include <QVector>

#include <sys/types.h>

#include "info/filepermentry.h"
#include "info/reportsections.h"

namespace OfficeAssiant {

/// Probes the machine for the system information report, the snapshot for the page and the details
/// of often-used paths. Every call runs its probes again, on the calling thread; a probe that fails
/// gives empty text.
class KInfoHelp : public QObject
{
    Q_OBJECT

public:
    explicit KInfoHelp(QObject *parent = nullptr);
    ~KInfoHelp() override;

    /// System name, release and hardware name of uname(2).
    QString getKernelInfo();

    /// The version line of each web browser found. The last one ends with a stray character that
    /// the page cuts off.
    QStringList getBrowserInfo();

    /// The model name of each logical processor, from /proc/cpuinfo.
    QStringList getCpuInfo();

    /// A line for each installed font face (fc-list), sorted.
    QStringList getFontInfo();

    /// The environment of this process, name=value.
    QStringList getEnvInfo();

    /// A line for each desktop entry of another office suite: name, localized name, command.
    QStringList getOtherOfficeInfo() const;

    /// Appends a report with the chosen sections to the file @p path. Results of earlier probes are
    /// used again, except for the other office suites. Does nothing if the file cannot be opened or
    /// is a pipe. False if the report was begun and is cut short.
    bool writeSysInfoReport(const QString &path, const ReportSections &sections);

    /// The suite's version, "Version:a.b.c.d", from its setup configuration.
    QString getVersionInfo() const;

    /// All probes for the page: "sysinfo", "vyrinfo", "officeinfo", "browserinfo", "fontinfo",
    /// "cpuInfo" and "envInfo", lists joined with "|".
    QJsonObject environmentSnapshot();

    /// For each often-used path, by its name: owner, group, permissions and modification time
    /// joined with "|".
    QJsonObject extractFileInfo();

    /// The paths whose permissions are listed, the suite's settings first.
    const QVector<FilePermEntry> &oftenFiles() const;
    void addOftenFile(const QString &name, const QString &path);

    /// Starts to append a listing (ls -dl) of the often-used paths to the file @p output. False if
    /// the script for it is not available.
    bool exportOftenFilePermissions(const QString &output);

    /// The same for the one path @p file.
    bool exportSpecialFilePermissions(const QString &output, const QString &file);

    /// Waits for the listings that were started. Without their script, which goes with the program,
    /// they would come to nothing.
    void waitForListings(int longestMs);

private:
    bool startListing(const QString &output, const QStringList &paths);

    QVector<FilePermEntry> m_oftenFiles;
    QVector<pid_t> m_listings;
    QString m_kernelInfo;
    QString m_browserInfo;
    QString m_cpuInfo;
    QString m_fontInfo;
    QString m_userInfo;
    QString m_envInfo;
};

} // namespace OfficeAssiant
