#include "helio/runtime/search/directory.h"

#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace helio {

Directory::Directory(const QByteArray &path)
{
    const int descriptor =
        ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0)
        return;
    m_stream = ::fdopendir(descriptor);
    if (!m_stream)
        ::close(descriptor);
}

Directory::~Directory()
{
    if (m_stream)
        ::closedir(m_stream);
}

bool Directory::isOpen() const
{
    return m_stream != nullptr;
}

const dirent *Directory::next()
{
    const dirent *entry = nullptr;
    do {
        entry = m_stream ? ::readdir(m_stream) : nullptr;
    } while (entry &&
             (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0));
    return entry;
}

bool Directory::isFolder(const dirent &entry) const
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status;
    return ::fstatat(::dirfd(m_stream), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

} // namespace helio
