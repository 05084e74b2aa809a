#pragma once

#include <QObject>

class QFileSystemWatcher;

namespace OfficeAssiant {

/// The directory into which the suite writes its crash dumps.
QString dumpDirectory();

/// Keeps watch over the suite's crash dumps.
class KDumpHelp : public QObject
{
    Q_OBJECT

public:
    explicit KDumpHelp(QObject *parent = nullptr);
    ~KDumpHelp() override;

    /// Whether the suite keeps crash dumps; it does unless its settings say otherwise.
    bool isDumpSavingEnabled() const;

    /// Makes the dump directory if it is missing and watches it.
    void startWatching();
    void stopWatching();

signals:
    void sigdumpfileready();

public slots:
    void dumpfilegenerate(const QString &directory);

private:
    QFileSystemWatcher *m_watcher;
};

} // namespace OfficeAssiant
