#pragma once

#include <QByteArray>

#include <deque>
#include <functional>

#include "helio/runtime/search/foundfile.h"
#include "helio/runtime/search/namepattern.h"

namespace helio {

/// Looks for matching names in a directory tree. Follows no symbolic links; skips what cannot be
/// read, file systems that are not searched, and the search's own databases.
class DirectoryWalk
{
public:
    /// Receives the matches in a directory, or in a part of a large one.
    using Sink = std::function<void(FoundFiles &&files)>;

    /// The walk ends soon after @p isStopped first returns true.
    DirectoryWalk(const NamePattern &pattern, std::function<bool()> isStopped, Sink sink);

    void run(const QByteArray &root) const;

private:
    void walkDirectory(const QByteArray &path, std::deque<QByteArray> &folders) const;

    const NamePattern &m_pattern;
    std::function<bool()> m_isStopped;
    Sink m_sink;
};

} // namespace helio
