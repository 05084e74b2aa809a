#include "doctor/journal/tree/problem.h"

#include <cerrno>
#include <cstring>

#include "texts/texts.h"

namespace doctor {

QString systemProblem(int error, const QString &path)
{
    switch (error) {
    case ENOSPC:
        return texts::tr("The disk that %1 is on is full.").arg(path);
    case EDQUOT:
        return texts::tr("Your share of the disk that %1 is on is used up.").arg(path);
    case EFBIG:
        return texts::tr("%1 would become larger than files may be here.").arg(path);
    case EROFS:
        return texts::tr("%1 is on a disk that can only be read.").arg(path);
    case EACCES:
        return texts::tr("You have no right to change or read %1, or a directory on the way to it.")
            .arg(path);
    case EPERM:
        return texts::tr("%1 cannot be changed: it is protected (lsattr shows it) or belongs to "
                         "another user.")
            .arg(path);
    case ELOOP:
    case ENOTDIR:
        return texts::tr("A directory on the way to %1 was replaced by a link or a file.")
            .arg(path);
    case EXDEV:
        return texts::tr("%1 cannot be moved to another disk.").arg(path);
    default:
        return texts::tr("%1 could not be changed: %2.")
            .arg(path, QString::fromLocal8Bit(std::strerror(error)));
    }
}

} // namespace doctor
