#pragma once

#include <QByteArray>

#include <functional>

#include "helio/runtime/search/namepattern.h"

namespace helio {

/// Looks through a directory tree for names that match. Follows no symbolic links, and passes over
/// what cannot be read, file systems that are not searched and the search's own databases.
class DirectoryWalk
{
public:
    using Sink = std::function<void(const QByteArray &path, bool isDirectory)>;

    /// @p isStopped is asked again and again; the walk ends as soon as it says yes.
    DirectoryWalk(const NamePattern &pattern, std::function<bool()> isStopped, Sink sink);

    void run(const QByteArray &root) const;

private:
    const NamePattern &m_pattern;
    std::function<bool()> m_isStopped;
    Sink m_sink;
};

} // namespace helio
