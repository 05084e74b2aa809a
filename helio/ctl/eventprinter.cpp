#include "helio/ctl/eventprinter.h"

#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace ctl {

EventPrinter::EventPrinter(bool pretty) : m_pretty(pretty) {}

void EventPrinter::print(const QJsonObject &event) const
{
    QByteArray line =
        QJsonDocument(event).toJson(m_pretty ? QJsonDocument::Indented : QJsonDocument::Compact);
    if (!m_pretty)
        line += '\n';
    const auto size = static_cast<std::size_t>(line.size());
    const bool isWritten =
        std::fwrite(line.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
    // A reader that has gone ends the program.
    if (!isWritten && !m_hasComplained && errno != EPIPE)
        qWarning("cannot write to standard output, events are lost: %s", std::strerror(errno));
    m_hasComplained = m_hasComplained || !isWritten;
}

void EventPrinter::printAnswer(const QJsonValue &id, const QString &page, const QString &command,
                               const QJsonObject &envelope) const
{
    QJsonObject event{{QStringLiteral("type"), QStringLiteral("answer")},
                      {QStringLiteral("id"), id},
                      {QStringLiteral("page"), page},
                      {QStringLiteral("command"), command}};
    QStringList keys{QStringLiteral("result")};
    // For the window's tasks; other readers know the documented keys alone.
    if (qEnvironmentVariableIsSet("OFFICE_ASSISTANT_TASK"))
        keys.append(QStringLiteral("incomplete"));
    for (const QString &key : qAsConst(keys)) {
        if (envelope.contains(key))
            event.insert(key, envelope.value(key));
    }
    print(event);
}

void EventPrinter::printError(const QJsonValue &id, const QString &message) const
{
    print({{QStringLiteral("type"), QStringLiteral("error")},
           {QStringLiteral("id"), id},
           {QStringLiteral("message"), message}});
}

void EventPrinter::printWaited(bool timeout) const
{
    QJsonObject event{{QStringLiteral("type"), QStringLiteral("waited")}};
    if (timeout)
        event.insert(QStringLiteral("timeout"), true);
    print(event);
}

} // namespace ctl
