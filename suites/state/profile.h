#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>

#include "doctor/machine/deadline.h"
#include "doctor/machine/machine.h"
#include "suites/installation.h"

namespace suites {

/// The part of everything that a description does not name.
extern const QString otherPart;

/// How much of a profile one part takes.
struct PartSize
{
    QString part;
    /// Its entries of the profile's folder.
    QStringList names;
    qint64 bytes = 0;
    int files = 0;
};

/// The user's settings of a suite.
struct Profile
{
    QString path;
    bool exists = false;
    /// In the order of the description; those that exist.
    QVector<PartSize> parts;
    /// Whether everything was counted: there is a limit of time and of files.
    bool isComplete = true;
    /// Copies of its settings that the suite keeps and that can be read, and when it made the last.
    int goodCopies = 0;
    QDateTime lastCopy;
    /// The folder beside it that the last reset has moved things to; empty without one.
    QString earlier;
};

/// Reads names and sizes, follows no link and changes nothing.
Profile profileOf(const Installation &installation, const doctor::Machine &machine,
                  const doctor::Deadline &deadline);

/// What the name of a folder with an earlier profile has after that of the profile; a time follows.
constexpr char earlierEnding[] = ".before-";

} // namespace suites
