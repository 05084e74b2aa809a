#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <vector>

namespace shell {

/// The arguments for the application object: the program's name and Chromium's switches. An
/// environment variable for these would be inherited by every program that is started.
class ChromiumArguments
{
public:
    /// @p debugPort is the port of the developer tools; 0 for none.
    ChromiumArguments(const char *programName, int debugPort, bool withoutSandbox);

    /// For the constructor of the application object, which keeps the reference.
    int &count() { return m_count; }
    char **values() { return m_values.data(); }

private:
    Q_DISABLE_COPY_MOVE(ChromiumArguments)

    std::vector<QByteArray> m_texts;
    std::vector<char *> m_values;
    int m_count = 0;
};

} // namespace shell
