#pragma once

#include <QString>
#include <QVector>

#include "doctor/why/open/mimetypes.h"

namespace doctor {

/// The type of what is asked for, and how GLib 2.74 finds it.
struct FoundType
{
    enum class How {
        Asked,   ///< it was asked for by its name
        Kind,    ///< it is a directory, a device, a pipe or a broken link
        Empty,   ///< it is an empty file, which is text whatever its name
        Name,    ///< by the file's name
        Content, ///< by the beginning of the file, as the name says nothing or several things
        Guessed  ///< by neither; text, or anything
    };

    QString type;
    How how = How::Asked;
    /// The patterns that the name fits.
    QVector<NameMatch> names;
    /// The strength of the rule that the content fits; 0 if it fits none.
    int priority = 0;
    /// Why the file could not be looked into; for people.
    QString problem;
};

FoundType typeOfFile(const QString &path, const OpenPlaces &places, const MimeTypes &types);

/// Where a MIME package declares the type: the pattern that the name fits, or else the type itself.
Place packageOf(const FoundType &type, const OpenPlaces &places, const MimeTypes &types);

} // namespace doctor
