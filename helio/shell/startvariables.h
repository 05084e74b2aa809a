#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <utility>
#include <vector>

namespace shell {

/// Changes variables of the environment during its lifetime, for Chromium, which reads them while
/// it starts. Programs that are started later inherit them as they were.
class StartVariables
{
public:
    /// Removes @p hidden, and gives each of @p set the value "1".
    StartVariables(const QByteArrayList &hidden, const QByteArrayList &set);
    ~StartVariables();

private:
    Q_DISABLE_COPY_MOVE(StartVariables)

    void keep(const QByteArray &name);

    /// Null for one that was not there.
    std::vector<std::pair<QByteArray, QByteArray>> m_before;
};

} // namespace shell
