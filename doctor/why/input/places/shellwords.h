#pragma once

#include <initializer_list>
#include <optional>

#include "doctor/why/input/places/shelllexer.h"

namespace doctor {

/// Whether a variable can have that name.
bool isName(const QByteArray &text);
bool isAnyOf(const QByteArray &word, std::initializer_list<const char *> words);
/// Whether the word is one of these and nothing of it quoted.
bool isReserved(const ShellToken &word, std::initializer_list<const char *> words);

/// The name of an assignment such as A=b or A+=b; empty if it is none.
QByteArray assignedName(const ShellToken &word);
/// Nothing if it is computed. The shell looks for patterns in an argument of export.
std::optional<QByteArray> assignedValue(const ShellToken &word, bool isArgument);
/// The path behind "." and "source", "~/" for the home directory. Nothing if it is computed.
std::optional<QByteArray> sourcedPath(const ShellToken &word);

} // namespace doctor
