#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <vector>

namespace shell {

/// The argument list of the application object: the program and what Chromium is told. Chromium's
/// switches go this way and not through the environment, which every started program inherits.
class ChromiumArguments
{
public:
    /// @p debugPort is the port of the developer tools, 0 for none.
    ChromiumArguments(const char *programName, int debugPort, bool withoutSandbox);

    /// For the constructor of the application object, which keeps referring to it.
    int &count() { return m_count; }
    char **values() { return m_values.data(); }

private:
    Q_DISABLE_COPY_MOVE(ChromiumArguments)

    std::vector<QByteArray> m_texts;
    std::vector<char *> m_values;
    int m_count = 0;
};

} // namespace shell
