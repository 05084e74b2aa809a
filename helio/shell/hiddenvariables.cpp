#include "helio/shell/hiddenvariables.h"

namespace shell {

HiddenVariables::HiddenVariables(const QByteArrayList &names)
{
    for (const QByteArray &name : names) {
        if (!qEnvironmentVariableIsSet(name.constData()))
            continue;
        m_hidden.emplace_back(name, qgetenv(name.constData()));
        qunsetenv(name.constData());
    }
}

HiddenVariables::~HiddenVariables()
{
    for (const auto &[name, value] : m_hidden)
        qputenv(name.constData(), value);
}

} // namespace shell
