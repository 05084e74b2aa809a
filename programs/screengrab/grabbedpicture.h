#pragma once

#include <QImage>
#include <QString>

namespace standin {

/// The outcome of a way to take a screenshot.
struct GrabbedPicture
{
    enum Outcome {
        Taken,
        /// This way does not work here; another may.
        NotPossible,
        /// The user said no, so that no other way may be tried.
        Refused,
    };

    Outcome outcome = NotPossible;
    QImage image;
    /// Where the desktop itself has saved the picture; empty when it did not.
    QString savedAs;
    /// Why there is no picture, for the user.
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

} // namespace standin
