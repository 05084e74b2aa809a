#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <utility>
#include <vector>

namespace shell {

/// Removes variables from the environment during its lifetime, so that Chromium does not read them
/// while it starts. Programs that are started later inherit them again.
class HiddenVariables
{
public:
    explicit HiddenVariables(const QByteArrayList &names);
    ~HiddenVariables();

private:
    Q_DISABLE_COPY_MOVE(HiddenVariables)

    std::vector<std::pair<QByteArray, QByteArray>> m_hidden;
};

} // namespace shell
