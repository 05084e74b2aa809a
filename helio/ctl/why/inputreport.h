#pragma once

#include <QString>

#include "doctor/why/input/input.h"
#include "doctor/why/input/remedy.h"

namespace ctl {

/// Lines for people: the verdict, what was seen, where each variable comes from, and the remedy.
QString inputText(const doctor::InputReport &report,
                  const std::optional<doctor::InputRemedy> &remedy);

} // namespace ctl
