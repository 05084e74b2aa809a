#pragma once

#include <QJsonObject>
#include <QStringList>

namespace programs {

struct Machine;

/// What runs in a process of its own, because it may hang or crash, or because its libraries may be
/// missing on the checked machine.
enum class Probe {
    Bus,
    Display,
    OpenGl,
    Printing
};

/// The facts of a probe, or why there are none.
struct ProbeEnd
{
    QString fault; ///< empty when there are facts
    QJsonObject facts;

    bool hasFacts() const { return fault.isEmpty(); }
};

/// Runs the machine's probe program within the machine's time limit.
ProbeEnd runProbe(const Machine &machine, Probe probe, const QStringList &arguments = {});

} // namespace programs
