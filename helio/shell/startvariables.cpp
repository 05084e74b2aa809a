#include "helio/shell/startvariables.h"

namespace shell {

StartVariables::StartVariables(const QByteArrayList &hidden, const Values &set)
{
    for (const QByteArray &name : hidden) {
        keep(name);
        qunsetenv(name.constData());
    }
    for (const auto &[name, value] : set) {
        keep(name);
        qputenv(name.constData(), value);
    }
}

StartVariables::~StartVariables()
{
    for (const auto &[name, value] : m_before) {
        if (value.isNull())
            qunsetenv(name.constData());
        else
            qputenv(name.constData(), value);
    }
}

void StartVariables::keep(const QByteArray &name)
{
    m_before.emplace_back(name, qgetenv(name.constData()));
}

} // namespace shell
