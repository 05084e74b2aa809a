#include "helio/runtime/search/databasequery.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include <utility>

#include "helio/runtime/processes/programoutput.h"

namespace helio {

namespace {

constexpr char program[] = "plocate";

constexpr int stopCheckMs = 20;
constexpr int longestSilenceMs = 10000;

/// plocate takes a list separated by colons, in which a backslash escapes a character.
QByteArray escapedDatabase(QByteArray path)
{
    return path.replace('\\', "\\\\").replace(':', "\\:");
}

QProcessEnvironment queryEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // plocate ignores the case of letters beyond ASCII in a UTF-8 locale only.
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    // It would add other databases.
    environment.remove(QStringLiteral("LOCATE_PATH"));
    return environment;
}

/// Passes the texts that end with a null character to the sink and keeps the rest.
void passComplete(QByteArray &unread, const DatabaseQuery::Sink &sink)
{
    std::vector<std::string_view> texts;
    int begin = 0;
    for (int end = unread.indexOf('\0'); end >= 0; end = unread.indexOf('\0', begin)) {
        texts.emplace_back(unread.constData() + begin, static_cast<std::size_t>(end - begin));
        begin = end + 1;
    }
    if (!texts.empty())
        sink(texts);
    unread.remove(0, begin);
}

} // namespace

DatabaseQuery::DatabaseQuery(const NamePattern &pattern, std::function<bool()> isStopped, Sink sink)
    : m_pattern(pattern), m_isStopped(std::move(isStopped)), m_sink(std::move(sink))
{
}

bool DatabaseQuery::isAvailable()
{
    return !QStandardPaths::findExecutable(QLatin1String(program)).isEmpty();
}

QList<QByteArray> DatabaseQuery::words(const QString &database) const
{
    QList<QByteArray> list{program, "--null", "--basename"};
    if (m_pattern.caseSensitivity() == Qt::CaseInsensitive)
        list.append("--ignore-case");
    list += {"--database", escapedDatabase(QFile::encodeName(database)), "--", m_pattern.toGlob()};
    return list;
}

DatabaseQuery::Outcome DatabaseQuery::run(const QString &database) const
{
    ProgramOutput plocate(words(database), queryEnvironment());
    if (!plocate.isStarted())
        return Outcome::Failed;
    QByteArray unread;
    QElapsedTimer silence;
    silence.start();
    while (!m_isStopped()) {
        switch (plocate.read(unread, stopCheckMs)) {
        case ProgramOutput::State::Output:
            passComplete(unread, m_sink);
            silence.restart();
            break;
        case ProgramOutput::State::Silent:
            if (silence.hasExpired(longestSilenceMs))
                return Outcome::Failed;
            break;
        case ProgramOutput::State::Ended:
            return plocate.hasSucceeded() ? Outcome::Complete : Outcome::Failed;
        }
    }
    return Outcome::Stopped;
}

} // namespace helio
