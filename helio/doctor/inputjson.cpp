#include "helio/doctor/inputjson.h"

#include <QJsonArray>

#include "helio/doctor/doctorwords.h"

namespace helio {

namespace {

using doctor::InputCause;
using doctor::InputRemedy;
using doctor::InputReport;
using doctor::InputVariable;
using doctor::Origin;
using doctor::Setting;

QString shown(const QByteArray &text)
{
    return QString::fromLocal8Bit(text);
}

QString nameOf(InputCause cause)
{
    switch (cause) {
    case InputCause::None:
        return {};
    case InputCause::Undecided:
        return QStringLiteral("undecided");
    case InputCause::NotRunning:
        return QStringLiteral("not-running");
    case InputCause::OtherRunning:
        return QStringLiteral("other-running");
    case InputCause::NoneInstalled:
        return QStringLiteral("none");
    case InputCause::VariableMissing:
        return QStringLiteral("variable-missing");
    case InputCause::VariablesDiffer:
        return QStringLiteral("variables-differ");
    case InputCause::PluginMissing:
        return QStringLiteral("plugin-missing");
    case InputCause::PluginArchitecture:
        return QStringLiteral("plugin-architecture");
    case InputCause::PluginToolkit:
        return QStringLiteral("plugin-toolkit");
    case InputCause::PluginUnlisted:
        return QStringLiteral("plugin-unlisted");
    case InputCause::OtherBus:
        return QStringLiteral("other-bus");
    case InputCause::NoAddress:
        break;
    }
    return QStringLiteral("no-address");
}

QString verdictOf(InputCause cause)
{
    if (cause == InputCause::None)
        return QStringLiteral("well");
    return cause == InputCause::Undecided ? QStringLiteral("undecided") : QStringLiteral("cause");
}

QString nameOf(Origin::State state)
{
    switch (state) {
    case Origin::State::Unset:
        return QStringLiteral("unset");
    case Origin::State::Line:
        return QStringLiteral("line");
    case Origin::State::Manager:
        return QStringLiteral("manager");
    case Origin::State::Undecided:
        break;
    }
    return QStringLiteral("undecided");
}

QString nameOf(const doctor::SessionKind &session)
{
    if (session.hasWayland)
        return QStringLiteral("wayland");
    return session.hasX11 ? QStringLiteral("x11") : QString();
}

QJsonArray placesObject(const QVector<Setting> &lines)
{
    QJsonArray places;
    for (const Setting &line : lines) {
        QJsonObject place{{QStringLiteral("path"), line.path}};
        if (line.line > 0)
            place.insert(QStringLiteral("line"), line.line);
        places.append(place);
    }
    return places;
}

QJsonArray variablesObject(const InputReport &report)
{
    QJsonArray variables;
    for (const InputVariable &one : report.variables) {
        const bool isLine = one.origin.state == Origin::State::Line;
        const Setting line = isLine ? one.origin.lines.constFirst() : Setting();
        variables.append(QJsonObject{
            {QStringLiteral("name"), shown(one.name)},
            {QStringLiteral("value"), one.value ? QJsonValue(shown(*one.value)) : QJsonValue()},
            {QStringLiteral("path"), line.path},
            {QStringLiteral("line"), line.line},
            {QStringLiteral("decided"), one.origin.state != Origin::State::Undecided},
            {QStringLiteral("origin"), nameOf(one.origin.state)},
            {QStringLiteral("places"), placesObject(one.origin.lines)}});
    }
    return variables;
}

QJsonArray frameworksObject(const InputReport &report)
{
    QJsonArray frameworks;
    for (const doctor::Framework &one : report.frameworks)
        frameworks.append(QJsonObject{{QStringLiteral("name"), shown(one.name)},
                                      {QStringLiteral("process"), one.process}});
    return frameworks;
}

QJsonObject busObject(const InputReport &report)
{
    QJsonArray names;
    for (const QByteArray &name : report.answer.names)
        names.append(shown(name));
    return {{QStringLiteral("address"), shown(report.bus)},
            {QStringLiteral("answers"), report.answer.isConnected},
            {QStringLiteral("names"), names}};
}

QJsonArray unreadObject(const InputReport &report)
{
    QJsonArray unread;
    for (const doctor::UnreadFile &one : report.unread)
        unread.append(QJsonObject{{QStringLiteral("path"), one.path},
                                  {QStringLiteral("problem"), one.problem}});
    return unread;
}

} // namespace

QString commandOf(const std::optional<InputRemedy> &remedy)
{
    return remedy && !remedy->isOwn ? commandLineOf(remedy->changes.constLast()) : QString();
}

QJsonObject inputObject(const InputReport &report, const std::optional<InputRemedy> &remedy)
{
    const doctor::InputProcess &process = report.process;
    QJsonObject line{{QStringLiteral("type"), QStringLiteral("why")},
                     {QStringLiteral("question"), QStringLiteral("input")},
                     {QStringLiteral("subject"), report.isProcess
                                                     ? QString::number(process.entry.id)
                                                     : QStringLiteral("session")},
                     {QStringLiteral("pid"), process.entry.id},
                     {QStringLiteral("verdict"), verdictOf(report.cause)},
                     {QStringLiteral("text"), report.text},
                     {QStringLiteral("cause"), nameOf(report.cause)},
                     {QStringLiteral("variable"), shown(report.variable)},
                     {QStringLiteral("wanted"), shown(report.wanted)},
                     {QStringLiteral("program"), process.program},
                     {QStringLiteral("sandbox"), process.sandbox},
                     {QStringLiteral("toolkit"), report.toolkit.name()},
                     {QStringLiteral("plugin"), report.plugin.path},
                     {QStringLiteral("display"), nameOf(process.session)},
                     {QStringLiteral("frameworks"), frameworksObject(report)},
                     {QStringLiteral("bus"), busObject(report)},
                     {QStringLiteral("variables"), variablesObject(report)},
                     {QStringLiteral("unread"), unreadObject(report)},
                     {QStringLiteral("remedy"), commandOf(remedy)}};
    if (remedy)
        line.insert(QStringLiteral("needs"),
                    remedy->isOwn ? QStringLiteral("user") : QStringLiteral("administrator"));
    return line;
}

} // namespace helio
