#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <string_view>
#include <vector>

#include "helio/runtime/search/namepattern.h"

namespace helio {

/// Asks a database for the paths of matching names, with plocate.
class DatabaseQuery
{
public:
    enum class Outcome {
        Complete,
        Failed,
        Stopped
    };
    /// Gets paths as they come, each with a null character behind it.
    using Sink = std::function<void(const std::vector<std::string_view> &paths)>;

    /// @p isStopped is asked again and again; the query ends as soon as it says yes.
    DatabaseQuery(const NamePattern &pattern, std::function<bool()> isStopped, Sink sink);

    /// Whether plocate is there.
    static bool isAvailable();

    /// Gives the paths to the sink. Fails when plocate cannot be started, complains
    /// or stays silent for ten seconds; paths may have been given by then.
    Outcome run(const QString &database) const;

private:
    QList<QByteArray> words(const QString &database) const;

    const NamePattern &m_pattern;
    std::function<bool()> m_isStopped;
    Sink m_sink;
};

} // namespace helio
