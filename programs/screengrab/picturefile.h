#pragma once

#include <QDateTime>
#include <QString>

#include "programs/screengrab/grabbedpicture.h"

namespace standin {

/// Where a picture lies, or why it does not.
struct PictureFile
{
    QString path;
    QString reason;
};

/// Saves @p picture as a PNG that only the user may read, in @p directory, which is made when it is
/// missing. A picture that the desktop has saved there stays as it is; one that it has saved
/// elsewhere goes once the copy is there. No file is ever overwritten.
PictureFile savePicture(const GrabbedPicture &picture, const QString &directory,
                        const QDateTime &takenAt);

} // namespace standin
