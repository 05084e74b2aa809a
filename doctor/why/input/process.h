#pragma once

#include <QStringList>
#include <QVector>

#include <optional>

#include "doctor/machine/machine.h"
#include "doctor/why/input/places/places.h"

namespace doctor {

/// A process as /proc/PID/stat has it.
struct ProcessEntry
{
    qint64 id = 0;
    qint64 parent = 0;
    uid_t user = 0;
    /// At most 15 bytes.
    QByteArray name;
    quint64 start = 0;
};

/// All processes that can be seen.
QVector<ProcessEntry> allProcesses(const Machine &machine);
std::optional<ProcessEntry> processNumbered(const Machine &machine, qint64 id);

/// A process whose environment could be read.
struct InputProcess
{
    ProcessEntry entry;
    QString program;
    /// As it was when the process was started.
    Environment environment;
    SessionKind session;
    Launch launch;
    /// "Flatpak" or "Snap"; empty for none.
    QString sandbox;
    /// What the process sees as "/", below the machine's root.
    QString root;
    /// Files that are mapped into it.
    QStringList mapped;
};

struct ReadProcess
{
    enum class State {
        Read,
        Missing,
        Foreign, ///< another user's, or protected
    };

    State state = State::Missing;
    InputProcess process;
};

/// @p all decides on the display manager and what started the process.
ReadProcess readProcess(const Machine &machine, qint64 id, const QVector<ProcessEntry> &all);

/// Of a process that could be looked into; nothing otherwise.
std::optional<Environment> environmentOf(const Machine &machine, qint64 id);

/// The process that a session of the machine's user is built around; nothing without a session.
std::optional<qint64> sessionProcess(const Machine &machine, const QVector<ProcessEntry> &all);

/// Sets what @p environment says about the session.
void readSessionKind(const Environment &environment, SessionKind &session);

} // namespace doctor
