#include "doctor/why/input/input.h"

#include <algorithm>

#include "doctor/why/input/verdict.h"
#include "texts/texts.h"

namespace doctor {

namespace {

/// Programs that start sessions: what they have says nothing about what they start.
bool startsSessions(const QByteArray &name)
{
    for (const char *beginning :
         {"systemd", "gdm", "lightdm", "sddm", "gnome-session", "startplasma", "login", "sshd",
          "init", "Xsession", "xinit", "startx", "ssh-agent"}) {
        if (name.startsWith(beginning))
            return true;
    }
    return false;
}

/// The environment of the program that started the process, where that says something.
std::optional<Environment> parentEnvironment(const Machine &machine, const InputProcess &process,
                                             const QVector<ProcessEntry> &all)
{
    const auto parent = std::find_if(all.begin(), all.end(), [&process](const ProcessEntry &one) {
        return one.id == process.entry.parent && one.user == process.entry.user;
    });
    if (parent == all.end() || parent->id <= 1 || startsSessions(parent->name))
        return std::nullopt;
    return environmentOf(machine, parent->id);
}

std::optional<QByteArray> valueIn(const Environment &environment, const QByteArray &name)
{
    const auto found = environment.constFind(name);
    return found == environment.constEnd() ? std::nullopt : std::optional(*found);
}

void readVariables(const Machine &machine, const QVector<ProcessEntry> &all, InputReport &report)
{
    const InputProcess &process = report.process;
    const Settings settings = inputSettings(machine, process.session, process.launch);
    report.unread = settings.unread;
    const std::optional<Environment> parent =
        report.isProcess ? parentEnvironment(machine, process, all) : std::nullopt;
    for (const char *name : inputVariables) {
        Evidence evidence;
        evidence.value = valueIn(process.environment, name);
        if (report.answer.manager)
            evidence.managerValue = valueIn(*report.answer.manager, name);
        evidence.isOfLaunch = parent && evidence.value && valueIn(*parent, name) != evidence.value;
        report.variables.append(
            {name, evidence.value, originOf(name, settings.all, process.session, evidence)});
    }
}

InputReport unread(ReadProcess::State state, const InputProcess &process, qint64 id)
{
    InputReport report;
    report.isProcess = true;
    report.process = process;
    report.process.entry.id = id;
    report.text =
        state == ReadProcess::State::Missing
            ? texts::tr("There is no process %1, or it has just ended.").arg(id)
            : texts::tr("Process %1 belongs to another user or is protected, so it cannot "
                        "be looked into.")
                  .arg(id);
    return report;
}

/// A session whose programs cannot be found has at least the manager's environment.
bool takeManager(InputReport &report)
{
    if (!report.answer.manager)
        return false;
    report.process.environment = *report.answer.manager;
    readSessionKind(report.process.environment, report.process.session);
    report.process.session.isManaged = true;
    return true;
}

} // namespace

const InputVariable *InputReport::named(const QByteArray &name) const
{
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [&name](const InputVariable &one) { return one.name == name; });
    return found == variables.end() ? nullptr : &*found;
}

QByteArray InputReport::value(const QByteArray &name) const
{
    return process.environment.value(name);
}

QString placeText(const Setting &line)
{
    return line.line == 0 ? line.path : line.path + QLatin1Char(':') + QString::number(line.line);
}

InputReport whyInput(const Machine &machine, std::optional<qint64> process, const AskBus &ask)
{
    const QVector<ProcessEntry> all = allProcesses(machine);
    const std::optional<qint64> id = process ? process : sessionProcess(machine, all);
    InputReport report;
    report.isProcess = process.has_value();
    // Of its user, and nothing of this program's environment.
    Machine its{machine.root, {}, machine.user};
    if (id) {
        const ReadProcess read = readProcess(machine, *id, all);
        if (read.state != ReadProcess::State::Read)
            return unread(read.state, read.process, *id);
        report.process = read.process;
        its.user = read.process.entry.user;
    }
    report.bus = busAddress(report.process.environment, its.user);
    report.answer = ask(report.bus);
    if (!id && !takeManager(report)) {
        report.text = texts::tr("No session of yours was found on this machine.");
        return report;
    }
    report.toolkit = report.isProcess ? toolkitOf(report.process.mapped) : Toolkit();
    report.frameworks = runningFrameworks(its, all);
    readVariables(its, all, report);
    decide(its, report);
    return report;
}

} // namespace doctor
