#pragma once

#include "doctor/why/input/places/sessionkind.h"
#include "doctor/why/input/places/setting.h"

namespace doctor {

/// Where the value that a process really has comes from.
struct Origin
{
    enum class State {
        Unset,     ///< the process does not have the variable, and no line should give it
        Line,      ///< `lines` has the one that set it
        Manager,   ///< no line, but the session manager gives it: systemctl --user set-environment
        Undecided, ///< `lines` has those that can have set it
    };

    State state = State::Undecided;
    QVector<Setting> lines;
    /// A line that should have set another value; its file may have changed since.
    std::optional<Setting> contradiction;
};

/// What the process has, and what surrounds it.
struct Evidence
{
    std::optional<QByteArray> value;
    /// What the session manager gives; nothing if it could not be asked.
    std::optional<QByteArray> managerValue;
    /// The process got the value when it was started: the one that started it has another.
    bool isOfLaunch = false;
};

/// @p settings in the order in which they take effect. Never guesses.
Origin originOf(const QByteArray &variable, const QVector<Setting> &settings,
                const SessionKind &session, const Evidence &evidence);

} // namespace doctor
