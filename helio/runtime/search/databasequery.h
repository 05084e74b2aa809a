#pragma once

#include <QString>

#include <functional>

#include "helio/runtime/search/namepattern.h"

class QProcess;

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
    using Sink = std::function<void(const QByteArray &path)>;

    /// @p isStopped is asked again and again; the query ends as soon as it says yes.
    DatabaseQuery(const NamePattern &pattern, std::function<bool()> isStopped, Sink sink);

    /// Whether plocate is there.
    static bool isAvailable();

    /// Gives the paths to the sink as they come. Fails when plocate cannot be started, complains
    /// or stays silent for ten seconds; paths may have been given by then.
    Outcome run(const QString &database) const;

private:
    void start(QProcess &process, const QString &database) const;
    Outcome read(QProcess &process) const;

    const NamePattern &m_pattern;
    std::function<bool()> m_isStopped;
    Sink m_sink;
};

} // namespace helio
