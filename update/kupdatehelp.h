#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QObject>
#include <QString>

#include <optional>

namespace OfficeAssiant {

/// Looks after the updater: its configuration, its log and its test runs.
///
/// A launch is detached and nobody hears of its failure; a missing updater shows in
/// isUpdateSupported() alone.
class KUpdateHelp : public QObject
{
    Q_OBJECT

public:
    /// @p updaterDirectory ends with a slash.
    explicit KUpdateHelp(const QString &updaterDirectory,
                         const QString &logDirectory = QStringLiteral("/var/log/vyrlog"),
                         QObject *parent = nullptr);
    ~KUpdateHelp() override;

    /// Whether both the updater and its configuration file are there.
    bool isUpdateSupported() const;

    /// The keys of the configuration's update group with their values as texts; nothing when
    /// there is no configuration file.
    std::optional<QJsonObject> readConfig() const;

    /// Stores a text in the configuration's update group; does nothing when there is no
    /// configuration file.
    void setConfigValue(const QString &key, const QString &value) const;

    /// The updater's log as UTF-8, with line feeds as line ends, up to its first zero byte;
    /// nothing when it cannot be read, or is more than an answer can carry.
    std::optional<QString> readLog() const;

    /// Removes the files of the log directory, those of other programs included.
    void clearLogDirectory() const;

    /// Lets the updater look for updates as if the user had asked for it.
    void startManualCheck() const;

    /// Lets the updater send its daily usage report, whenever it sent the last one.
    void startDailyReport() const;

    void startUninstallReport() const;
    void startInstallReport() const;

private:
    QString updater() const;
    QString configFile() const;
    void launch(const QString &option) const;

    QString m_updaterDirectory;
    QString m_logDirectory;
};

} // namespace OfficeAssiant
