#pragma once

#include <QDateTime>
#include <QString>

#include "programs/screengrab/grabbedpicture.h"

namespace programs {

/// The path of a saved picture, or why it was not saved.
struct PictureFile
{
    QString path;
    QString reason;
};

/// Saves @p picture in @p directory as a PNG that only the user may read. Creates the directory. A
/// picture that the desktop saved there is kept as it is; one that it saved elsewhere is removed
/// once the new file exists. Overwrites no file.
PictureFile savePicture(const GrabbedPicture &picture, const QString &directory,
                        const QDateTime &takenAt);

} // namespace programs
