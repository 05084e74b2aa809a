#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QObject>
#include <QString>

#include <optional>

namespace OfficeAssiant {

/// The updater's configuration, log and test runs.
///
/// Launches are detached and their failures are not reported; only isUpdateSupported() tells
/// whether the updater is missing.
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

    /// The keys of the configuration's update group with their values as texts; nothing if
    /// there is no configuration file.
    std::optional<QJsonObject> readConfig() const;

    /// Stores a text in the configuration's update group; does nothing when there is no
    /// configuration file.
    void setConfigValue(const QString &key, const QString &value) const;

    /// The updater's log, at most its first 16 MiB, read as UTF-8 up to its first zero byte, with
    /// line feeds as line ends. Nothing if it cannot be read.
    std::optional<QString> readLog() const;

    /// Removes all files in the log directory, other programs' included.
    void clearLogDirectory() const;

    /// Makes the updater look for updates as if the user had asked for it.
    void startManualCheck() const;

    /// Makes the updater send its daily usage report, even if one was sent today.
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
