#include "helio/ctl/why/inputreport.h"

#include <QJsonArray>

#include "helio/doctor/doctorwords.h"
#include "texts/texts.h"

namespace ctl {

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

QString displayText(const doctor::SessionKind &session)
{
    if (session.hasWayland)
        return texts::tr("Display: Wayland; without a variable, input comes from the compositor");
    return session.hasX11 ? texts::tr("Display: X11; the toolkit talks to the input method itself")
                          : texts::tr("Display: none");
}

QString placesOf(const QVector<Setting> &lines)
{
    QStringList places;
    for (const Setting &line : lines)
        places.append(doctor::placeText(line));
    return places.join(QStringLiteral(", "));
}

QString originText(const Origin &origin)
{
    switch (origin.state) {
    case Origin::State::Unset:
    case Origin::State::Line:
        return placesOf(origin.lines);
    case Origin::State::Manager:
        return texts::tr("from the session manager (systemctl --user), in no file");
    case Origin::State::Undecided:
        break;
    }
    QString text = origin.lines.isEmpty()
                       ? texts::tr("where it comes from cannot be decided")
                       : texts::tr("cannot be decided, perhaps %1").arg(placesOf(origin.lines));
    if (origin.contradiction)
        text += texts::tr("; %1 says otherwise").arg(doctor::placeText(*origin.contradiction));
    return text;
}

QString variableLine(const InputVariable &variable)
{
    const QString name = shown(variable.name);
    const QString origin = originText(variable.origin);
    const QString value = variable.value ? QStringLiteral("%1=%2").arg(name, shown(*variable.value))
                                         : texts::tr("%1 is not set").arg(name);
    return origin.isEmpty() ? value : value + QStringLiteral("  (") + origin + QLatin1Char(')');
}

QStringList processLines(const InputReport &report)
{
    const doctor::InputProcess &process = report.process;
    QStringList lines;
    if (process.entry.id > 0)
        lines.append(texts::tr("Process: %1 %2").arg(process.entry.id).arg(process.program));
    if (!process.sandbox.isEmpty())
        lines.append(texts::tr("Sandbox: %1").arg(process.sandbox));
    if (report.isProcess)
        lines.append(
            report.toolkit.name().isEmpty()
                ? texts::tr("Toolkit: none")
                : texts::tr("Toolkit: %1, %2").arg(report.toolkit.name(), report.toolkit.library));
    if (!report.plugin.path.isEmpty())
        lines.append(texts::tr("Plug-in: %1").arg(report.plugin.path));
    lines.append(displayText(process.session));
    return lines;
}

QString frameworksLine(const InputReport &report)
{
    QStringList names;
    for (const doctor::Framework &one : report.frameworks)
        names.append(texts::tr("%1 (process %2)").arg(shown(one.name)).arg(one.process));
    return names.isEmpty()
               ? texts::tr("Running input methods: none")
               : texts::tr("Running input methods: %1").arg(names.join(QStringLiteral(", ")));
}

QString busLine(const InputReport &report)
{
    QStringList names;
    for (const QByteArray &name : report.answer.names)
        names.append(shown(name));
    if (!report.answer.isConnected)
        return texts::tr("Message bus: %1, which does not answer").arg(shown(report.bus));
    return texts::tr("Message bus: %1").arg(shown(report.bus)) +
           (names.isEmpty() ? QString() : QStringLiteral(", ") + names.join(QStringLiteral(", ")));
}

QString commandOf(const std::optional<InputRemedy> &remedy)
{
    return remedy && !remedy->isOwn ? helio::commandLineOf(remedy->changes.constLast()) : QString();
}

QString remedyText(const InputRemedy &remedy, const InputReport &report)
{
    if (!remedy.isOwn)
        return texts::tr("The administrator can change it: %1").arg(commandOf(remedy));
    return texts::tr("To repair it: set %1 in %2 (--fix does it), then log out and in.")
        .arg(shown(report.variable + '=' + report.wanted), doctor::placeText(remedy.line));
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

QString inputText(const InputReport &report, const std::optional<InputRemedy> &remedy)
{
    QStringList lines{report.text};
    // Nothing else was seen of a process that could not be read.
    if (!report.variables.isEmpty()) {
        lines += processLines(report);
        lines.append(frameworksLine(report));
        lines.append(busLine(report));
    }
    for (const InputVariable &variable : report.variables)
        lines.append(variableLine(variable));
    for (const doctor::UnreadFile &one : report.unread)
        lines.append(texts::tr("Not read: %1, %2").arg(one.path, one.problem));
    if (remedy)
        lines.append(remedyText(*remedy, report));
    QString text;
    for (const QString &line : qAsConst(lines))
        text += helio::visible(line) + QLatin1Char('\n');
    return text;
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

} // namespace ctl
