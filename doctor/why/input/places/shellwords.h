#pragma once

#include <QVector>

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

/// The assignments among the words of a call of env(1).
QVector<ShellToken> environmentOf(const QVector<ShellToken> &words);

/// What a call of the shell's "set" changes.
struct ShellOptions
{
    /// Whether variables are exported from then on; nothing if it stays as it was.
    std::optional<bool> exportsAll;
    /// From then on each command that fails ends the script.
    bool endsOnFailure = false;
};
ShellOptions optionsOf(const QVector<ShellToken> &words);

} // namespace doctor
