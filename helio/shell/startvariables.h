#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <utility>
#include <vector>

namespace shell {

/// Changes variables of the environment during its lifetime, for Qt and Chromium, which read them
/// while they start. Programs that are started later inherit them as they were.
class StartVariables
{
public:
    /// Names and what they are set to.
    using Values = std::vector<std::pair<QByteArray, QByteArray>>;

    /// Removes @p hidden, and sets @p set.
    StartVariables(const QByteArrayList &hidden, const Values &set);
    ~StartVariables();

private:
    Q_DISABLE_COPY_MOVE(StartVariables)

    void keep(const QByteArray &name);

    /// Null for one that was not there.
    Values m_before;
};

} // namespace shell
