#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

#include "doctor/machine/deadline.h"
#include "doctor/machine/machine.h"
#include "suites/description.h"

namespace suites {

/// A suite that this machine has, as its files say: nothing of it is started.
struct Installation
{
    QString suite;
    QString name;
    QString version;
    /// Of its Place.
    QString source;
    QString folder;
    /// Where its settings of this user are, or will be; empty if that cannot be told.
    QString profile;
    /// Starts it.
    QStringList command;
    /// What the names of its desktop entries begin with.
    QString entries;
    QStringList components;
    QStringList plugins;
    QStringList languages;
};

/// In the order of the places, the newest version of a place first.
QVector<Installation> installations(const Description &description, const doctor::Machine &machine,
                                    const doctor::Deadline &deadline);

/// The user's choice, if it was kept and is still there.
std::optional<Installation> keptChoice(const QVector<Installation> &found,
                                       const doctor::Machine &machine);

/// The one that is looked after: the kept choice, otherwise the first.
std::optional<Installation> chosen(const QVector<Installation> &found,
                                   const doctor::Machine &machine);

/// What the names of desktop entries begin with: of each suite those of the one that is looked
/// after.
QStringList chosenEntries(const doctor::Machine &machine, const doctor::Deadline &deadline);

/// Where the choice is kept: its folder, in one line.
QString choiceFile(const QString &suite, const doctor::Machine &machine);

/// Keeps the choice. Returns why that is not possible; empty if it is done.
QString keepChoice(const Installation &installation, const doctor::Machine &machine);

} // namespace suites
