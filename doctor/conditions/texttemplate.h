#pragma once

#include <QString>
#include <QStringList>

#include "doctor/conditions/value.h"
#include "doctor/machine/machine.h"

namespace doctor {

/// A text with everything filled in, or why that is not possible.
struct Expansion
{
    QString text;
    QString problem;
};

/// What is done to values and variables before they stand in the text.
enum class Filling {
    AsIs,
    ForPathPattern
};

/// Fills in "{value}", "{value:-text}", "$NAME", "${NAME}" and "${NAME:-text}"; "$$" and "{{" stand
/// for "$" and "{". Variables are those of the environment (Machine::variable()); one that is not
/// set and has no text is a problem, a value that was not seen or is empty gives the text.
Expansion expanded(const QString &text, const Values &values, const Machine &machine,
                   Filling filling = Filling::AsIs);

/// Fills in "{value}" and "{value:-text}" alone: for texts that people read.
QString filledIn(const QString &text, const QMap<QString, QString> &values);

/// The names in braces, in their order.
QStringList placeholdersOf(const QString &text);

/// Whether anything is to be filled in.
bool hasPlaceholders(const QString &text);

/// Why the braces or variables of @p text cannot be read; empty if they can.
QString templateProblem(const QString &text);

} // namespace doctor
