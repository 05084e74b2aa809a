#pragma once

#include <QString>

#include <optional>

#include "doctor/model/finding.h"
#include "doctor/why/input/framework.h"
#include "doctor/why/input/places/origin.h"
#include "doctor/why/input/plugin.h"
#include "doctor/why/input/process.h"
#include "doctor/why/input/toolkit.h"

namespace doctor {

/// Why an input method does not work in a process; None if nothing was found.
enum class InputCause {
    None,
    Undecided,       ///< the process could not be looked into, or the plug-ins not
    NotRunning,      ///< the input method that a variable names
    OtherRunning,    ///< another one than the variable names
    NoneInstalled,   ///< none runs, and the language needs one
    VariableMissing, ///< the toolkit is not told to use the one that runs
    VariablesDiffer, ///< of the session: they name different ones
    PluginMissing,
    PluginArchitecture,
    PluginToolkit,
    PluginUnlisted,
    OtherBus,  ///< the process and the input method use different message buses
    NoAddress, ///< ibus runs, but the process cannot find it
};

/// One of the input variables as the process has it.
struct InputVariable
{
    QByteArray name;
    std::optional<QByteArray> value;
    Origin origin;
};

struct InputReport
{
    InputCause cause = InputCause::Undecided;
    /// The verdict in one sentence, for people.
    QString text;
    /// The variable that the cause is about; empty for none.
    QByteArray variable;
    /// What it should be; empty if that is not known.
    QByteArray wanted;

    /// False for a session.
    bool isProcess = false;
    InputProcess process;
    Toolkit toolkit;
    Plugin plugin;
    QVector<Framework> frameworks;
    /// What the process uses, and what answered there.
    QByteArray bus;
    BusAnswer answer;
    QVector<InputVariable> variables;
    QVector<UnreadFile> unread;

    const InputVariable *named(const QByteArray &name) const;
    /// Empty where it is not set.
    QByteArray value(const QByteArray &name) const;
};

/// Explains a process, or the session of the machine's user. The environment of this program plays
/// no part. Changes nothing.
InputReport whyInput(const Machine &machine, std::optional<qint64> process,
                     const AskBus &ask = &askBus);

/// Where a line stands, as text.
QString placeText(const Setting &line);

} // namespace doctor
