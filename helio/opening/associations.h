#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

#include "helio/opening/openingsuite.h"

namespace helio {

/// How one of the desktop's programs has ended.
struct DesktopAnswer
{
    bool isCancelled = false;
    /// For people; empty if it ended well.
    QString fault;
    QByteArray output;
};

/// Runs a program of the desktop by its name.
using AskDesktop =
    std::function<DesktopAnswer(const QString &program, const QStringList &arguments)>;

/// What the desktop makes of documents with one suffix.
struct Association
{
    DocumentKind kind;
    QString type;
    /// The desktop entry that opens them; empty for none.
    QString entry;
};

/// What gio says of samples of all kinds. Those without a sample are left out.
struct AssociationReading
{
    bool isCancelled = false;
    /// Why it could not be read, for people.
    QString fault;
    QVector<Association> rows;
};

AssociationReading readAssociations(const QString &samples, const AskDesktop &ask);

/// Has documents of kinds whose @p suffixes are named, or of all, open with the suite. What is well
/// stays. Only what the desktop's programs say afterwards counts.
/// @return as read afterwards
AssociationReading repairAssociations(const OpeningSuite &suite, const QString &samples,
                                      const QStringList &suffixes, const doctor::Machine &machine,
                                      const AskDesktop &ask);

} // namespace helio
