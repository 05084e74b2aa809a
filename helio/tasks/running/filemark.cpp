#include "helio/tasks/running/filemark.h"

#include <QFile>

#include <sys/stat.h>

namespace helio {

FileMark::FileMark(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return;
    m_device = status.st_dev;
    m_inode = status.st_ino;
    m_seconds = status.st_mtim.tv_sec;
    m_nanoseconds = status.st_mtim.tv_nsec;
    m_size = status.st_size;
}

} // namespace helio
