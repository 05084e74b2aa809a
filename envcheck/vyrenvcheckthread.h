#pragma once

#include <QJsonObject>
#include <QMap>
#include <QThread>

#include <atomic>
#include <mutex>

#include "envcheck/environmentcheck.h"

namespace OfficeAssiant {

class CheckPage;

/// Runs the suite's environment check tool, one check at a time, and shows its findings on the
/// page.
class VyrEnvCheckThread : public QThread
{
    Q_OBJECT

public:
    /// @p page must outlive the thread.
    explicit VyrEnvCheckThread(CheckPage &page, QObject *parent = nullptr);

    /// Waits for a running check, whose tool is killed if it takes too long, and drops its
    /// findings.
    ~VyrEnvCheckThread() override;

    /// Starts a check. First waits without a time limit for one that is still running, whose
    /// findings are dropped.
    void check(const EnvironmentCheck &wanted);

    /// Asks a running check, if any, to drop its findings.
    void requestStop();

    /// What the checks so far have found, "type-app" → text; each check replaces an earlier one
    /// of the same type and component. Names are what the page expects: their UTF-8 bytes, one
    /// character each.
    QJsonObject keptResults() const;

protected:
    void run() override;

private:
    /// wait(), after which everything that run() did is seen.
    bool endsWithin(int milliseconds);
    void checkOnce();
    void keep(const QString &value);

    CheckPage &m_page;
    QString m_toolPath;
    EnvironmentCheck m_check;
    mutable std::mutex m_resultsGuard;
    QMap<QString, QString> m_results;
    std::atomic<bool> m_isRunning{false};
    std::atomic<bool> m_stopRequested{false};
};

} // namespace OfficeAssiant
