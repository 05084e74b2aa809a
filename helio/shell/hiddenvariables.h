#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <utility>
#include <vector>

namespace shell {

/// Takes variables out of the environment for as long as it lives: Chromium does not get to see
/// them while it starts, and started programs find them again later.
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
