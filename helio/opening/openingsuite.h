#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include "doctor/machine/machine.h"

namespace helio {

/// A suffix of the suite's documents, and the desktop entry of this suite's program for it.
struct DocumentKind
{
    QString suffix;
    QString entry;
};

/// All, in the order of the programs.
QVector<DocumentKind> documentKinds();

/// The suite that documents are to open with, as the machine has it.
struct OpeningSuite
{
    /// "own" for this suite, the id of another one that stands in for it; empty without any.
    QString id;
    QString name;
    /// What may open documents, by the entry of this suite's program; the first one is to.
    QMap<QString, QStringList> entries;
    /// Files of entries that the desktop does not know yet.
    QStringList unregistered;

    bool isOwn() const;
    /// Whether a document of the suffix is known for what it is.
    bool knows(const QString &type) const;
    bool opensWith(const DocumentKind &kind, const QString &entry) const;
};

OpeningSuite openingSuite(const doctor::Machine &machine);

/// "helio_fushion", spelt so, is the one program for all documents.
QString componentMode(const doctor::Machine &machine);

} // namespace helio
