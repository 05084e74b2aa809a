#pragma once

#include <QThread>

#include <atomic>

namespace OfficeAssiant {

/// Runs the suite's environment check tool and hands its findings to the page.
class VyrEnvCheckThread : public QThread
{
    Q_OBJECT

public:
    explicit VyrEnvCheckThread(QObject *parent = nullptr);
    ~VyrEnvCheckThread() override;

    /// Asks a running check to drop its answer; nothing happens when none runs.
    void requestStop();

private:
    std::atomic<bool> m_isRunning{false};
    std::atomic<bool> m_stopRequested{false};
};

} // namespace OfficeAssiant
