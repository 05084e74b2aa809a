#include "helio/runtime/search/directorywalk.h"

#include <QFile>
#include <QSet>

#include <cstring>
#include <deque>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "helio/runtime/search/searchlocations.h"
#include "helio/runtime/search/unsearchedmounts.h"

namespace helio {

namespace {

using Directory = std::unique_ptr<DIR, int (*)(DIR *)>;

Directory openDirectory(const QByteArray &path)
{
    const int descriptor =
        ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    DIR *directory = descriptor < 0 ? nullptr : ::fdopendir(descriptor);
    if (descriptor >= 0 && !directory)
        ::close(descriptor);
    return {directory, ::closedir};
}

bool isDirectory(const Directory &parent, const dirent &entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status;
    return ::fstatat(::dirfd(parent.get()), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

bool isItselfOrParent(const dirent &entry)
{
    return std::strcmp(entry.d_name, ".") == 0 || std::strcmp(entry.d_name, "..") == 0;
}

} // namespace

DirectoryWalk::DirectoryWalk(const NamePattern &pattern, std::function<bool()> isStopped, Sink sink)
    : m_pattern(pattern), m_isStopped(std::move(isStopped)), m_sink(std::move(sink))
{
}

void DirectoryWalk::run(const QByteArray &root) const
{
    QSet<QByteArray> unsearched = unsearchedMountPoints();
    unsearched.insert(QFile::encodeName(searchDatabaseDirectory()));
    // What lies near the root is found first.
    std::deque<QByteArray> toDo{root};
    while (!toDo.empty()) {
        const QByteArray path = std::move(toDo.front());
        toDo.pop_front();
        const Directory directory = openDirectory(path);
        if (!directory)
            continue;
        const QByteArray prefix = path.endsWith('/') ? path : path + '/';
        while (const dirent *entry = ::readdir(directory.get())) {
            if (m_isStopped())
                return;
            if (isItselfOrParent(*entry))
                continue;
            const QByteArray name(entry->d_name);
            const bool isFolder = isDirectory(directory, *entry);
            if (m_pattern.matches(name))
                m_sink(prefix + name, isFolder);
            if (isFolder && !unsearched.contains(prefix + name))
                toDo.push_back(prefix + name);
        }
    }
}

} // namespace helio
