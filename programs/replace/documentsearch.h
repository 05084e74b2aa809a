#pragma once

#include <QStringList>

#include "programs/replace/text/search.h"

namespace programs {

/// A document after the search.
struct SearchedDocument
{
    QString path;
    QVector<Hit> hits;
    /// Its bytes, and those with the replacement; both empty without a hit.
    QByteArray before;
    QByteArray after;
    /// Why it was not searched, for the user.
    QString problem;
};

/// Searches a document of OpenDocument or Office Open XML. Refuses what is open elsewhere, signed,
/// protected, damaged or unreasonably big. Only reads.
SearchedDocument searchedDocument(const QString &path, const Search &search);

/// The documents among @p paths and in the folders among them, with their subfolders. Links and
/// hidden names in folders are left out.
QStringList documentsIn(const QStringList &paths);

} // namespace programs
