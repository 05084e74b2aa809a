#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <string_view>
#include <vector>

#include "helio/runtime/search/namepattern.h"

namespace helio {

/// Reads the paths of matching names from a database, with plocate.
class DatabaseQuery
{
public:
    enum class Outcome {
        Complete,
        Failed,
        Stopped
    };
    /// Receives paths as they arrive, each followed by a null character.
    using Sink = std::function<void(const std::vector<std::string_view> &paths)>;

    /// The query ends soon after @p isStopped first returns true.
    DatabaseQuery(const NamePattern &pattern, std::function<bool()> isStopped, Sink sink);

    /// Whether plocate is installed.
    static bool isAvailable();

    /// Passes the paths to the sink. Fails if plocate cannot be started, reports an error or
    /// prints nothing for ten seconds; the sink may have received paths by then.
    Outcome run(const QString &database) const;

private:
    QList<QByteArray> words(const QString &database) const;

    const NamePattern &m_pattern;
    std::function<bool()> m_isStopped;
    Sink m_sink;
};

} // namespace helio
