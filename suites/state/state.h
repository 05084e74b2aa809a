#pragma once

#include <optional>

#include "suites/addons/addons.h"
#include "suites/state/profile.h"

namespace suites {

/// How a suite draws its windows.
struct Graphics
{
    /// The VCL plug-in that it takes on this desktop; empty if it has none.
    QString plugin;
    /// Whether SAL_USE_VCLPLUGIN names it.
    bool isForced = false;
    /// Skia and OpenCL as the profile sets them; nothing where it does not.
    std::optional<bool> skia;
    std::optional<bool> openCl;
};

/// What an installation is like now. Nothing is started or changed.
struct State
{
    Installation installation;
    Profile profile;
    QVector<Addon> extensions;
    Graphics graphics;
    /// The user's processes of the suite.
    QVector<qint64> processes;
    /// Whether its profile has a lock.
    bool isLocked = false;
};

/// Within @p deadline and about 50 ms for what has a bound of its own.
State stateOf(const Installation &installation, const doctor::Machine &machine,
              const doctor::Deadline &deadline);

/// The user's processes of the suite.
QVector<qint64> processesOf(const Description &description, const doctor::Machine &machine);

} // namespace suites
