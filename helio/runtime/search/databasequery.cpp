#include "helio/runtime/search/databasequery.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <utility>

namespace helio {

namespace {

const QString program = QStringLiteral("plocate");

constexpr int stopCheckMs = 20;
constexpr int longestSilenceMs = 10000;

/// A list of databases is separated by colons, and a backslash takes a character as it is.
QString escapedDatabase(QString path)
{
    path.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    path.replace(QLatin1Char(':'), QLatin1String("\\:"));
    return path;
}

QProcessEnvironment queryEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Letters other than ASCII have cases in a UTF-8 locale only.
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    // It would add databases to ours.
    environment.remove(QStringLiteral("LOCATE_PATH"));
    return environment;
}

/// Gives the texts that end with a null character to the sink and keeps the rest.
void takeComplete(QByteArray *unread, const DatabaseQuery::Sink &sink)
{
    int begin = 0;
    for (int end = unread->indexOf('\0'); end >= 0; end = unread->indexOf('\0', begin)) {
        sink(unread->mid(begin, end - begin));
        begin = end + 1;
    }
    unread->remove(0, begin);
}

} // namespace

DatabaseQuery::DatabaseQuery(const NamePattern &pattern, std::function<bool()> isStopped, Sink sink)
    : m_pattern(pattern), m_isStopped(std::move(isStopped)), m_sink(std::move(sink))
{
}

bool DatabaseQuery::isAvailable()
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}

DatabaseQuery::Outcome DatabaseQuery::run(const QString &database) const
{
    QProcess process;
    start(process, database);
    const Outcome outcome = read(process);
    if (outcome == Outcome::Complete) {
        // No match and an error give the same status; only an error says something.
        const bool failed = process.exitStatus() != QProcess::NormalExit ||
                            (process.exitCode() != 0 && !process.readAllStandardError().isEmpty());
        return failed ? Outcome::Failed : Outcome::Complete;
    }
    process.kill();
    process.waitForFinished(longestSilenceMs);
    return outcome;
}

void DatabaseQuery::start(QProcess &process, const QString &database) const
{
    QStringList arguments{QStringLiteral("--null"), QStringLiteral("--basename")};
    if (m_pattern.caseSensitivity() == Qt::CaseInsensitive)
        arguments.append(QStringLiteral("--ignore-case"));
    arguments += {QStringLiteral("--database"), escapedDatabase(database), QStringLiteral("--"),
                  QFile::decodeName(m_pattern.toShellPattern())};
    process.setProcessEnvironment(queryEnvironment());
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments, QProcess::ReadOnly);
}

DatabaseQuery::Outcome DatabaseQuery::read(QProcess &process) const
{
    QByteArray unread;
    const auto sinkUnlessStopped = [this](const QByteArray &path) {
        if (!m_isStopped())
            m_sink(path);
    };
    QElapsedTimer silence;
    silence.start();
    while (!m_isStopped()) {
        const bool hasEnded = process.state() == QProcess::NotRunning;
        if (!hasEnded)
            process.waitForReadyRead(stopCheckMs);
        const QByteArray piece = process.readAllStandardOutput();
        if (!piece.isEmpty()) {
            unread += piece;
            takeComplete(&unread, sinkUnlessStopped);
            silence.restart();
        } else if (hasEnded) {
            return process.error() == QProcess::FailedToStart ? Outcome::Failed : Outcome::Complete;
        } else if (silence.hasExpired(longestSilenceMs)) {
            return Outcome::Failed;
        }
    }
    return Outcome::Stopped;
}

} // namespace helio
