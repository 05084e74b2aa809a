#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace programs {

/// What is searched for, and what comes in its place.
struct Search
{
    QString find;
    QString replacement;
    bool ignoresCase = false;
};

/// The kinds of XML that text is found in.
enum class Markup {
    OpenDocument,
    OfficeOpenXml
};

/// A place where the text was found, with what is around it in its paragraph.
struct Hit
{
    QString before;
    QString found;
    QString after;
};

/// A part of a document after the search.
struct SearchedPart
{
    QVector<Hit> hits;
    /// With the replacement; the same as before if there was no hit.
    QByteArray content;
    /// Why it cannot be read, for the user.
    QString problem;
};

/// Finds the text within each paragraph, over the borders of its formatting. The replacement takes
/// the place and format of the hit's first character. Nothing else of @p xml changes, but for the
/// attribute that keeps spaces in the elements with the text.
SearchedPart searchedPart(const QByteArray &xml, Markup markup, const Search &search);

} // namespace programs
