#pragma once

#include <QImage>
#include <QString>

namespace programs {

/// The outcome of one method of taking a screenshot.
struct GrabbedPicture
{
    enum Outcome {
        Taken,
        /// This method does not work here; another may.
        NotPossible,
        /// The user said no, so no other method may be tried.
        Refused,
    };

    Outcome outcome = NotPossible;
    QImage image;
    /// The desktop's own copy of the picture; may be empty.
    QString savedAs;
    /// Why there is no picture, as a text for the user.
    QString reason;

    static GrabbedPicture taken(const QImage &image, const QString &savedAs = {})
    {
        return {Taken, image, savedAs, {}};
    }
    static GrabbedPicture notPossible(const QString &reason)
    {
        return {NotPossible, {}, {}, reason};
    }
    static GrabbedPicture refused(const QString &reason) { return {Refused, {}, {}, reason}; }
};

} // namespace programs
