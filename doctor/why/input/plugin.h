#pragma once

#include "doctor/why/input/process.h"
#include "doctor/why/input/toolkit.h"

namespace doctor {

/// The part of a toolkit that talks to an input method.
struct Plugin
{
    enum class State {
        Loaded, ///< mapped into the process
        Fine,
        Missing,
        WrongArchitecture,
        WrongToolkit,  ///< built for another version
        NotRegistered, ///< GTK's list of modules lacks it
        Unknown,       ///< the directories cannot be looked at
    };

    State state = State::Unknown;
    QString path;
    /// WrongToolkit: what it was built for. NotRegistered: the list.
    QString detail;
};

/// @p module as GTK_IM_MODULE and QT_IM_MODULE name it.
Plugin pluginOf(const InputProcess &process, const Toolkit &toolkit, const QByteArray &module);

/// The module that GTK's settings of user or system name, for where no variable does; empty for
/// none.
QByteArray gtkModuleOfSettings(const InputProcess &process, const Toolkit &toolkit,
                               const QString &home);

/// Whether GTK takes @p module without being told for the language of @p locale.
bool isUsualModule(const InputProcess &process, const Toolkit &toolkit, const QByteArray &module,
                   const QByteArray &locale);

} // namespace doctor
