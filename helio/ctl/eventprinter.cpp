#include "helio/ctl/eventprinter.h"

#include <QJsonDocument>

#include <cstdio>

namespace ctl {

EventPrinter::EventPrinter(bool pretty) : m_pretty(pretty) {}

void EventPrinter::print(const QJsonObject &event) const
{
    QByteArray line =
        QJsonDocument(event).toJson(m_pretty ? QJsonDocument::Indented : QJsonDocument::Compact);
    if (!m_pretty)
        line += '\n';
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
    std::fflush(stdout);
}

void EventPrinter::printAnswer(const QJsonValue &id, const QString &page, const QString &command,
                               const QJsonObject &envelope) const
{
    QJsonObject event{{QStringLiteral("type"), QStringLiteral("answer")},
                      {QStringLiteral("id"), id},
                      {QStringLiteral("page"), page},
                      {QStringLiteral("command"), command}};
    const auto result = envelope.constFind(QLatin1String("result"));
    if (result != envelope.constEnd())
        event.insert(QStringLiteral("result"), *result);
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
