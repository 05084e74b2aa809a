#include "doctor/why/input/connection.h"

#include "texts/texts.h"

namespace doctor {

namespace {

QString shown(const QByteArray &text)
{
    return QString::fromLocal8Bit(text);
}

const Framework *running(const InputReport &report, const QByteArray &module)
{
    for (const Framework &one : report.frameworks) {
        if (one.module == module)
            return &one;
    }
    return nullptr;
}

Fault ibusFault(const Machine &machine, const InputReport &report)
{
    if (!report.value("IBUS_ADDRESS").isEmpty())
        return {};
    const IbusAddress address = ibusAddress(machine, report.process.environment);
    if (address.isFound && address.isAlive)
        return {};
    const QString text =
        address.isFound
            ? texts::tr("ibus is running, but %1 names one that has ended: restart ibus.")
            : texts::tr("ibus is running, but the process cannot find it: there is no file %1.");
    return {InputCause::NoAddress, text.arg(address.files.value(0))};
}

Fault busFault(const Machine &machine, const InputReport &report, const Framework &framework)
{
    const std::optional<Environment> its = environmentOf(machine, framework.process);
    const QByteArray bus = its ? busAddress(*its, machine.user) : report.bus;
    if (bus == report.bus)
        return {};
    return {InputCause::OtherBus,
            texts::tr("%1 is running, but on the message bus %2, and the process uses %3.")
                .arg(shown(framework.name), shown(bus), shown(report.bus))};
}

} // namespace

Fault pluginFault(const InputReport &report, const QByteArray &module)
{
    const Plugin &plugin = report.plugin;
    const QString name = shown(module);
    const QString toolkit = report.toolkit.name();
    switch (plugin.state) {
    case Plugin::State::Loaded:
    case Plugin::State::Fine:
        return {};
    case Plugin::State::Missing:
        return {InputCause::PluginMissing,
                report.process.sandbox.isEmpty()
                    ? texts::tr("%1 has no plug-in for %2: install it.").arg(toolkit, name)
                    : texts::tr("%1 has no plug-in for %2 in the %3 sandbox of the program.")
                          .arg(toolkit, name, report.process.sandbox)};
    case Plugin::State::WrongArchitecture:
        return {InputCause::PluginArchitecture,
                texts::tr("%1 is built for another processor than the program.").arg(plugin.path)};
    case Plugin::State::WrongToolkit:
        return {InputCause::PluginToolkit, texts::tr("%1 is built for %2, but the program uses %3.")
                                               .arg(plugin.path, plugin.detail, toolkit)};
    case Plugin::State::NotRegistered:
        return {InputCause::PluginUnlisted,
                texts::tr("%1 is not in GTK's list of modules, %2: the administrator has to run "
                          "gtk-query-immodules.")
                    .arg(plugin.path, plugin.detail)};
    case Plugin::State::Unknown:
        break;
    }
    return {InputCause::Undecided,
            texts::tr("The plug-ins of %1 cannot be looked at.").arg(toolkit)};
}

const Framework *frameworkFor(const Machine &machine, const InputReport &report,
                              const QByteArray &family)
{
    const Framework *const own = running(report, family);
    if (own || family != "ibus")
        return own;
    // fcitx5 answers to programs that look for ibus as well.
    const IbusAddress address = ibusAddress(machine, report.process.environment);
    return address.isFound && address.isAlive ? running(report, "fcitx") : nullptr;
}

Fault connectionFault(const Machine &machine, const InputReport &report, const QByteArray &family)
{
    const Framework *const framework = frameworkFor(machine, report, family);
    // What a sandbox passes on has addresses of its own.
    if (!framework || !report.process.sandbox.isEmpty())
        return {};
    return family == "ibus" ? ibusFault(machine, report) : busFault(machine, report, *framework);
}

} // namespace doctor
