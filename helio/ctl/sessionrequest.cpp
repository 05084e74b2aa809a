#include "helio/ctl/sessionrequest.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <limits>

namespace {

constexpr int longestUntilMs = 30000;

bool isDuration(const QJsonValue &value)
{
    const double number = value.toDouble(-1);
    return number >= 0 && number <= std::numeric_limits<int>::max();
}

ctl::SessionRequest faulty(ctl::SessionRequest request, const QString &fault)
{
    request.kind = ctl::SessionRequest::Faulty;
    request.fault = fault;
    return request;
}

ctl::SessionRequest readWait(ctl::SessionRequest request, const QJsonValue &duration)
{
    if (!isDuration(duration))
        return faulty(request, QStringLiteral("\"wait\" needs a number of milliseconds"));
    request.kind = ctl::SessionRequest::Wait;
    request.durationMs = static_cast<int>(duration.toDouble());
    return request;
}

ctl::SessionRequest readUntil(ctl::SessionRequest request, const QJsonObject &object)
{
    const QJsonValue timeout = object.value(QLatin1String("timeout"));
    request.callback = object.value(QLatin1String("until")).toString();
    if (request.callback.isEmpty())
        return faulty(request, QStringLiteral("\"until\" needs the name of a callback"));
    if (!timeout.isUndefined() && !isDuration(timeout))
        return faulty(request, QStringLiteral("\"timeout\" needs a number of milliseconds"));
    request.kind = ctl::SessionRequest::Until;
    request.durationMs = static_cast<int>(timeout.toDouble(longestUntilMs));
    return request;
}

ctl::SessionRequest readCommand(ctl::SessionRequest request, const QJsonObject &object)
{
    const QJsonValue page = object.value(QLatin1String("page"));
    const QJsonValue args = object.value(QLatin1String("args"));
    const QJsonValue choices = object.value(QLatin1String("choose"));
    request.command = object.value(QLatin1String("command")).toString();
    if (request.command.isEmpty())
        return faulty(request, QStringLiteral("\"command\" needs the name of a command"));
    request.page = page.toString(page.isUndefined() ? QStringLiteral("main") : QString());
    if (request.page != QLatin1String("main") && request.page != QLatin1String("child"))
        return faulty(request, QStringLiteral("\"page\" must be main or child"));
    if (!args.isUndefined() && !args.isObject())
        return faulty(request, QStringLiteral("\"args\" must be an object"));
    const QJsonArray paths = choices.toArray();
    if ((!choices.isUndefined() && !choices.isArray()) ||
        !std::all_of(paths.begin(), paths.end(),
                     [](const QJsonValue &path) { return path.isString(); }))
        return faulty(request, QStringLiteral("\"choose\" must be an array of paths"));
    request.kind = ctl::SessionRequest::Command;
    request.args = args.toObject();
    for (const QJsonValue &path : paths)
        request.choices.append(path.toString());
    return request;
}

} // namespace

ctl::SessionRequest ctl::parseSessionRequest(const QByteArray &line)
{
    SessionRequest request;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError)
        return faulty(request, QStringLiteral("not JSON: ") + error.errorString());
    if (!document.isObject())
        return faulty(request, QStringLiteral("not a JSON object"));
    const QJsonObject object = document.object();
    const QJsonValue id = object.value(QLatin1String("id"));
    request.id = id.isUndefined() ? QJsonValue() : id;
    if (object.contains(QLatin1String("command")))
        return readCommand(request, object);
    if (object.contains(QLatin1String("wait")))
        return readWait(request, object.value(QLatin1String("wait")));
    if (object.contains(QLatin1String("until")))
        return readUntil(request, object);
    return faulty(request, QStringLiteral("a request needs \"command\", \"wait\" or \"until\""));
}
