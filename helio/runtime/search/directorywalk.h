#pragma once

#include <QByteArray>

#include <deque>
#include <functional>

#include "helio/runtime/search/foundfile.h"
#include "helio/runtime/search/namepattern.h"

namespace helio {

/// Looks through a directory tree for names that match. Follows no symbolic links, and passes over
/// what cannot be read, file systems that are not searched and the search's own databases.
class DirectoryWalk
{
public:
    /// Gets what was found in a directory, or in a part of a large one.
    using Sink = std::function<void(FoundFiles &&files)>;

    /// @p isStopped is asked again and again; the walk ends as soon as it says yes.
    DirectoryWalk(const NamePattern &pattern, std::function<bool()> isStopped, Sink sink);

    void run(const QByteArray &root) const;

private:
    void walkDirectory(const QByteArray &path, std::deque<QByteArray> *folders) const;

    const NamePattern &m_pattern;
    std::function<bool()> m_isStopped;
    Sink m_sink;
};

} // namespace helio
