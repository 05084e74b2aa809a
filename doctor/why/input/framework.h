#pragma once

#include <functional>

#include "doctor/why/input/process.h"

namespace doctor {

/// A running input method.
struct Framework
{
    /// "fcitx5", "fcitx" or "ibus".
    QByteArray name;
    /// What GTK_IM_MODULE and QT_IM_MODULE call it.
    QByteArray module;
    qint64 process = 0;
};

/// Of the machine's user.
QVector<Framework> runningFrameworks(const Machine &machine, const QVector<ProcessEntry> &all);

struct BusAnswer
{
    bool isConnected = false;
    /// Those of input methods.
    QVector<QByteArray> names;
    /// What systemctl --user show-environment prints; nothing if there is no such manager.
    std::optional<Environment> manager;
};

/// Asks a session's message bus, for less than a fifth of a second. Starts nothing.
BusAnswer askBus(const QByteArray &address);
using AskBus = std::function<BusAnswer(const QByteArray &address)>;

/// The bus that programs with this environment use; without what differs between equal addresses.
QByteArray busAddress(const Environment &environment, uid_t user);

/// Where ibus tells its address to programs with this environment.
struct IbusAddress
{
    /// The files that are looked for, the preferred one first.
    QStringList files;
    bool isFound = false;
    /// Whether the daemon of the file still runs.
    bool isAlive = false;
};
IbusAddress ibusAddress(const Machine &machine, const Environment &environment);

} // namespace doctor
