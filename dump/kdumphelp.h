#pragma once

#include <QObject>
#include <QString>

class QFileSystemWatcher;

namespace OfficeAssiant {

/// Watches, clears and configures the suite's crash dumps.
class KDumpHelp : public QObject
{
    Q_OBJECT

public:
    explicit KDumpHelp(QObject *parent = nullptr);
    ~KDumpHelp() override;

    /// Whether the suite's settings tell it to keep crash dumps; true if they do not say.
    bool isDumpSavingEnabled() const;
    void setDumpSaving(bool enabled);

    /// Watches the dump directory, which is made if it is missing.
    void startWatching();
    void stopWatching();

    /// Whether there is a dump to send: hasRecentStamp() of the newest one.
    bool hasRecentDump() const;

    /// Removes all plain files in the dump directory. Files that cannot be removed stay.
    void clearDumpDirectory();

signals:
    void sigdumpfileready();

public slots:
    void dumpfilegenerate(const QString &directory);

private:
    QFileSystemWatcher *m_watcher;
};

} // namespace OfficeAssiant
