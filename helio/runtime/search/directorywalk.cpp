#include "helio/runtime/search/directorywalk.h"

#include <QFile>
#include <QSet>

#include <utility>

#include "helio/runtime/search/directory.h"
#include "helio/runtime/search/searchlocations.h"
#include "helio/runtime/search/unsearchedmounts.h"

namespace helio {

namespace {

constexpr std::size_t mostAtOnce = 256;

} // namespace

DirectoryWalk::DirectoryWalk(const NamePattern &pattern, std::function<bool()> isStopped, Sink sink)
    : m_pattern(pattern), m_isStopped(std::move(isStopped)), m_sink(std::move(sink))
{
}

void DirectoryWalk::run(const QByteArray &root) const
{
    QSet<QByteArray> unsearched = unsearchedMountPoints();
    unsearched.insert(QFile::encodeName(searchDatabaseDirectory()));
    // Breadth first, so that files near the root come first.
    std::deque<QByteArray> toDo{root};
    while (!toDo.empty() && !m_isStopped()) {
        const QByteArray path = std::move(toDo.front());
        toDo.pop_front();
        if (path == root || !unsearched.contains(path))
            walkDirectory(path, toDo);
    }
}

void DirectoryWalk::walkDirectory(const QByteArray &path, std::deque<QByteArray> &folders) const
{
    Directory directory(path);
    const QByteArray prefix = path.endsWith('/') ? path : path + '/';
    FoundFiles found;
    while (const dirent *entry = m_isStopped() ? nullptr : directory.next()) {
        const QByteArray name(entry->d_name);
        const bool isFolder = directory.isFolder(*entry);
        if (m_pattern.matches(name))
            found.push_back({prefix + name, isFolder});
        if (isFolder)
            folders.push_back(prefix + name);
        if (found.size() >= mostAtOnce)
            m_sink(std::exchange(found, {}));
    }
    if (!found.empty())
        m_sink(std::move(found));
}

} // namespace helio
