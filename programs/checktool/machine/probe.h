#pragma once

#include <QJsonObject>
#include <QStringList>

namespace standin {

struct Machine;

/// What is tried out in a process of its own, because it may hang or crash, and because its
/// libraries may be missing on the machine that is checked.
enum class Probe {
    Bus,
    Display,
    OpenGl,
    Printing
};

/// How a probe ended: its facts, or why there are none.
struct ProbeEnd
{
    QString fault; ///< empty when there are facts
    QJsonObject facts;

    bool hasFacts() const { return fault.isEmpty(); }
};

/// Starts the machine's probe program and waits for it, within the machine's time limit.
ProbeEnd runProbe(const Machine &machine, Probe probe, const QStringList &arguments = {});

} // namespace standin
