#include "doctor/why/input/remedy.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

#include "doctor/editors/lineeditor.h"
#include "doctor/repairs/draft.h"

namespace doctor {

namespace {

/// Values that need no quotes anywhere.
bool isPlainWord(const QString &text)
{
    static const QRegularExpression word(QStringLiteral(R"(^[\w@=.-]+$)"));
    return word.match(text).hasMatch();
}

/// The line with another value; empty if the value does not stand in it as it is.
QString changedLine(const QString &line, const Setting &setting, const QByteArray &wanted)
{
    static const QRegularExpression framework(QStringLiteral(R"(^(\s*run_im\s+)[\w-]+)"));
    const QRegularExpressionMatch named = framework.match(line);
    QString changed = line;
    if (named.hasMatch() && setting.stage == Stage::InputConfig) {
        const QByteArray name = wanted.startsWith("@im=") ? wanted.mid(4) : wanted;
        return changed.replace(0, named.capturedLength(0),
                               named.captured(1) + QString::fromLatin1(name));
    }
    const QRegularExpression assignment(QStringLiteral(R"(\b%1(?:\s+(?:DEFAULT|OVERRIDE))?=["']?)")
                                            .arg(QString::fromLatin1(setting.variable)) +
                                        QStringLiteral("(%1)(?![\\w-])")
                                            .arg(QRegularExpression::escape(QString::fromUtf8(
                                                setting.value.value_or(QByteArray())))));
    const QRegularExpressionMatch match = assignment.match(line);
    if (!match.hasMatch() || !setting.value || setting.value->isEmpty())
        return {};
    return changed.replace(match.capturedStart(1), match.capturedLength(1),
                           QString::fromLatin1(wanted));
}

QString lineNumbered(const QByteArray &content, int number)
{
    return QString::fromUtf8(content.split('\n').value(number - 1));
}

/// The administrator's file with line and new text, as a command.
bool showCommand(const Setting &setting, const QString &text, Draft &draft)
{
    const bool isPlain = !text.contains(QLatin1Char('\\')) && !text.at(0).isSpace() &&
                         std::none_of(text.begin(), text.end(),
                                      [](QChar c) { return c.category() == QChar::Other_Control; });
    if (isPlain)
        draft.show({QStringLiteral("sed"), QStringLiteral("-i"),
                    QStringLiteral("%1c\\%2").arg(setting.line).arg(text), setting.path});
    return isPlain;
}

std::optional<InputRemedy> byChange(const Machine &machine, const Setting &setting,
                                    const QByteArray &wanted)
{
    Draft draft(machine);
    const QByteArray content = draft.content(setting.path).value_or(QByteArray());
    const QString old = lineNumbered(content, setting.line);
    const QString text = changedLine(old, setting, wanted);
    const LineQuery query{LineQuery::Kind::Whole, old};
    const std::optional<FoundKey> found = findLine(content, query).line;
    // The same line may stand further up.
    if (text.isEmpty() || !found || found->line != setting.line)
        return std::nullopt;
    const EditedContent edited = replaceLine(content, query, text);
    if (!edited.content)
        return std::nullopt;
    const bool isOwn = draft.write(setting.path, *edited.content).isEmpty();
    if (!isOwn && !showCommand(setting, text, draft))
        return std::nullopt;
    InputRemedy remedy{draft.changes(), setting, isOwn};
    remedy.line.value = wanted;
    return remedy;
}

/// A file of the user that the session reads for certain.
QString fileFor(const Machine &machine, const SessionKind &session)
{
    const bool readsEnvironmentD = session.isManaged || session.isGnome || session.isPlasma;
    if (session.hasWayland && readsEnvironmentD)
        return machine.home() + QStringLiteral("/.config/environment.d/input-method.conf");
    if (session.isX11() && session.displayManager != DisplayManager::Unknown)
        return machine.home() + QStringLiteral("/.xprofile");
    if (session.isX11() && QFileInfo::exists(machine.located(
                               QStringLiteral("/etc/X11/Xsession.d/40x11-common_xsessionrc"))))
        return machine.home() + QStringLiteral("/.xsessionrc");
    return {};
}

std::optional<InputRemedy> byAddition(const Machine &machine, const SessionKind &session,
                                      const QByteArray &variable, const QByteArray &wanted)
{
    const QString path = fileFor(machine, session);
    if (path.isEmpty())
        return std::nullopt;
    const bool isShell = !path.endsWith(QLatin1String(".conf"));
    Draft draft(machine);
    QByteArray content = draft.content(path).value_or(QByteArray());
    if (!content.isEmpty() && !content.endsWith('\n'))
        content += '\n';
    const int line = content.count('\n') + 1;
    content += (isShell ? "export " : "") + variable + '=' + wanted + '\n';
    for (const QString &directory : {machine.home() + QStringLiteral("/.config"),
                                     machine.home() + QStringLiteral("/.config/environment.d")}) {
        if (!isShell && !draft.exists(directory) && !draft.makeDirectory(directory, 0700).isEmpty())
            return std::nullopt;
    }
    if (!draft.write(path, content).isEmpty())
        return std::nullopt;
    return InputRemedy{
        draft.changes(), {variable, wanted, false, true, Stage::Display, path, line}, true};
}

} // namespace

std::optional<InputRemedy> remedyFor(const Machine &machine, const InputReport &report)
{
    const InputVariable *const variable = report.named(report.variable);
    if (!variable || report.wanted.isEmpty() || !isPlainWord(QString::fromUtf8(report.wanted)))
        return std::nullopt;
    Machine its{machine.root, {}, report.process.entry.user};
    if (!report.isProcess && its.user == 0)
        its.user = machine.user;
    const Origin &origin = variable->origin;
    if (origin.state == Origin::State::Line)
        return byChange(its, origin.lines.constFirst(), report.wanted);
    if (origin.state == Origin::State::Unset && origin.lines.isEmpty())
        return byAddition(its, report.process.session, report.variable, report.wanted);
    return std::nullopt;
}

bool isInForce(const Machine &machine, const InputReport &report, const InputRemedy &remedy)
{
    Machine its{machine.root, {}, machine.user};
    const Settings now = inputSettings(its, report.process.session, report.process.launch);
    return std::any_of(now.all.begin(), now.all.end(), [&remedy](const Setting &one) {
        return one.isSure && one.variable == remedy.line.variable &&
               one.value == remedy.line.value && one.path == remedy.line.path &&
               one.line == remedy.line.line;
    });
}

} // namespace doctor
