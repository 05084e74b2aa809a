#pragma once

#include "doctor/why/input/input.h"

namespace doctor {

struct Fault
{
    InputCause cause = InputCause::None;
    /// For people; empty without a cause.
    QString text;
};

/// What is wrong with the report's plug-in for @p module.
Fault pluginFault(const InputReport &report, const QByteArray &module);

/// The running input method that answers to "fcitx" or "ibus"; null if there is none.
const Framework *frameworkFor(const Machine &machine, const InputReport &report,
                              const QByteArray &family);

/// What is wrong between the process and the input method: bus and address.
Fault connectionFault(const Machine &machine, const InputReport &report, const QByteArray &family);

} // namespace doctor
