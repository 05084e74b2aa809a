#include "helio/ctl/why/inputreport.h"

#include "helio/doctor/doctorwords.h"
#include "helio/doctor/inputjson.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using doctor::InputRemedy;
using doctor::InputReport;
using doctor::InputVariable;
using doctor::Origin;
using doctor::Setting;

QString shown(const QByteArray &text)
{
    return QString::fromLocal8Bit(text);
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

QString remedyText(const InputRemedy &remedy, const InputReport &report)
{
    if (!remedy.isOwn)
        return texts::tr("The administrator can change it: %1").arg(helio::commandOf(remedy));
    return texts::tr("To repair it: set %1 in %2 (--fix does it), then log out and in.")
        .arg(shown(report.variable + '=' + report.wanted), doctor::placeText(remedy.line));
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

} // namespace ctl
