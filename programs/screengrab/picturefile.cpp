#include "programs/screengrab/picturefile.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <unistd.h>

#include "texts/texts.h"

namespace programs {

namespace {

/// Most screenshots with the time of the same second.
constexpr int mostOfOneSecond = 100;

QString fileName(const QDateTime &takenAt, int number)
{
    const QString suffix = number > 1 ? QStringLiteral("-%1").arg(number) : QString();
    return QStringLiteral("screenshot-") + takenAt.toString(QStringLiteral("yyyy-MM-dd-HHmmss")) +
           suffix + QStringLiteral(".png");
}

bool liesIn(const QString &file, const QString &directory)
{
    return !file.isEmpty() && QFileInfo(QFileInfo(file).canonicalPath()).filePath() ==
                                  QFileInfo(directory).canonicalFilePath();
}

/// The desktop's own copy, which the user would not look for.
void removeCopy(const QString &path)
{
    const QFileInfo file(path);
    if (!path.isEmpty() && file.isFile() && !file.isSymLink() && file.ownerId() == ::geteuid())
        QFile::remove(path);
}

} // namespace

PictureFile savePicture(const GrabbedPicture &picture, const QString &directory,
                        const QDateTime &takenAt)
{
    const QDir folder(directory);
    if (!folder.mkpath(QStringLiteral(".")))
        return {{}, texts::tr("the folder cannot be made: %1").arg(directory)};
    if (liesIn(picture.savedAs, directory))
        return {picture.savedAs, {}};
    // Under another name first, so that nobody sees an incomplete picture.
    QTemporaryFile file(folder.filePath(QStringLiteral(".screenshot-XXXXXX")));
    if (!file.open() || !picture.image.save(&file, "PNG") || !file.flush())
        return {{}, texts::tr("cannot write to %1: %2").arg(directory, file.errorString())};
    for (int number = 1; number <= mostOfOneSecond; ++number) {
        const QString path = folder.filePath(fileName(takenAt, number));
        if (QFile::exists(path) || !file.rename(path))
            continue;
        file.setAutoRemove(false);
        removeCopy(picture.savedAs);
        return {path, {}};
    }
    return {{}, texts::tr("no file name is left in %1").arg(directory)};
}

} // namespace programs
