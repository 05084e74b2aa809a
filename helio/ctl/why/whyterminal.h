#pragma once

#include <QJsonObject>
#include <QString>

#include <cstdio>
#include <optional>

#include "helio/ctl/why/whyoptions.h"
#include "helio/doctor/whyrepair.h"

namespace ctl {

/// Prints in the encoding of the terminal, at once.
void print(const QString &text, std::FILE *stream);
/// Prints an answer: the object as one line with --json, else the text.
void printAnswer(const WhyFlags &flags, const QJsonObject &object, const QString &text);

/// Prints what is wrong with the arguments, or the help where it is asked for.
/// @return the exit status, a WhyStatus; nothing if there is a question to answer
std::optional<int> endOfLine(const WhyFlags &flags, const QString &help);

/// Shows the repair, asks as far as the options want it, and makes it.
/// @return whether it was made and has helped
bool repair(const WhyFlags &flags, const helio::WhyRepair &repair);

} // namespace ctl
