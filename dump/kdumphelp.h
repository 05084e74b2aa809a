#pragma once

#include <QObject>
#include <QString>

class QFileSystemWatcher;

namespace OfficeAssiant {

/// Keeps watch over the suite's crash dumps.
class KDumpHelp : public QObject
{
    Q_OBJECT

public:
    explicit KDumpHelp(QObject *parent = nullptr);
    ~KDumpHelp() override;

    /// Whether the suite keeps crash dumps, as its settings say now; it does when they say nothing.
    bool isDumpSavingEnabled() const;
    void setDumpSaving(bool enabled);

    /// Makes the dump directory if it is missing and watches it.
    void startWatching();
    void stopWatching();

    /// Whether there is a dump to send: hasRecentStamp() of the newest one.
    bool hasRecentDump() const;

    /// Removes the plain files of the dump directory, whatever their names are. What cannot be
    /// removed stays.
    void clearDumpDirectory();

signals:
    void sigdumpfileready();

public slots:
    void dumpfilegenerate(const QString &directory);

private:
    QFileSystemWatcher *m_watcher;
};

} // namespace OfficeAssiant
