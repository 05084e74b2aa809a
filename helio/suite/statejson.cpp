#include "helio/suite/statejson.h"

#include <QJsonArray>

namespace helio {

namespace {

/// A profile of a usual size takes a few milliseconds.
constexpr std::chrono::milliseconds lookLimit(1000);

QJsonObject profileObject(const suites::Profile &profile)
{
    QJsonArray parts;
    double size = 0;
    for (const suites::PartSize &part : profile.parts) {
        const auto bytes = static_cast<double>(part.bytes);
        size += bytes;
        parts.append(QJsonObject{{QStringLiteral("part"), part.part},
                                 {QStringLiteral("names"), QJsonArray::fromStringList(part.names)},
                                 {QStringLiteral("size"), bytes},
                                 {QStringLiteral("files"), part.files}});
    }
    return {{QStringLiteral("path"), profile.path},
            {QStringLiteral("exists"), profile.exists},
            {QStringLiteral("complete"), profile.isComplete},
            {QStringLiteral("size"), size},
            {QStringLiteral("parts"), parts},
            {QStringLiteral("copies"), profile.goodCopies},
            {QStringLiteral("lastCopy"), profile.lastCopy.toString(Qt::ISODate)},
            {QStringLiteral("earlier"), profile.earlier}};
}

QJsonArray extensionList(const QVector<suites::Addon> &extensions)
{
    QJsonArray list;
    for (const suites::Addon &addon : extensions)
        list.append(
            QJsonObject{{QStringLiteral("name"), addon.name},
                        {QStringLiteral("version"), addon.version},
                        {QStringLiteral("owner"), addon.owner},
                        {QStringLiteral("path"), addon.path},
                        {QStringLiteral("uses"), QJsonArray::fromStringList(addon.uses)},
                        {QStringLiteral("faults"), QJsonArray::fromStringList(addon.faults)}});
    return list;
}

QJsonValue flagValue(const std::optional<bool> &flag)
{
    return flag ? QJsonValue(*flag) : QJsonValue();
}

} // namespace

QJsonObject suiteLine(const suites::Installation &installation, bool isChosen)
{
    QJsonObject line{{QStringLiteral("type"), QStringLiteral("suite")}};
    line.insert(QStringLiteral("suite"), installation.suite);
    line.insert(QStringLiteral("name"), installation.name);
    line.insert(QStringLiteral("version"), installation.version);
    line.insert(QStringLiteral("source"), installation.source);
    line.insert(QStringLiteral("folder"), installation.folder);
    line.insert(QStringLiteral("profile"), installation.profile);
    line.insert(QStringLiteral("components"), QJsonArray::fromStringList(installation.components));
    line.insert(QStringLiteral("plugins"), QJsonArray::fromStringList(installation.plugins));
    line.insert(QStringLiteral("languages"), QJsonArray::fromStringList(installation.languages));
    line.insert(QStringLiteral("chosen"), isChosen);
    return line;
}

QString stateName(const suites::State &state)
{
    if (!state.processes.isEmpty())
        return QStringLiteral("running");
    if (state.isLocked)
        return QStringLiteral("locked");
    return state.profile.exists ? QStringLiteral("ready") : QStringLiteral("unused");
}

QJsonObject stateObject(const suites::State &state)
{
    QJsonArray processes;
    for (const qint64 process : state.processes)
        processes.append(process);
    const suites::Graphics &graphics = state.graphics;
    return {{QStringLiteral("state"), stateName(state)},
            {QStringLiteral("processes"), processes},
            {QStringLiteral("profile"), profileObject(state.profile)},
            {QStringLiteral("extensions"), extensionList(state.extensions)},
            {QStringLiteral("graphics"),
             QJsonObject{{QStringLiteral("plugin"), graphics.plugin},
                         {QStringLiteral("forced"), graphics.isForced},
                         {QStringLiteral("skia"), flagValue(graphics.skia)},
                         {QStringLiteral("openCl"), flagValue(graphics.openCl)}}}};
}

QVector<suites::Installation> allInstallations(const doctor::Machine &machine)
{
    QVector<suites::Installation> all;
    for (const suites::Description &description : suites::descriptions())
        all += suites::installations(description, machine, doctor::Deadline(lookLimit));
    return all;
}

QJsonObject suiteDescription(const doctor::Machine &machine)
{
    const QVector<suites::Installation> all = allInstallations(machine);
    const std::optional<suites::Installation> chosen = suites::chosen(all, machine);
    QJsonObject description;
    if (chosen)
        description = stateObject(suites::stateOf(*chosen, machine, doctor::Deadline(lookLimit)));
    QJsonArray lines;
    for (const suites::Installation &one : all)
        lines.append(suiteLine(one, chosen && one.folder == chosen->folder));
    description.insert(QStringLiteral("installations"), lines);
    return description;
}

std::optional<suites::State> stateOfChosen(const doctor::Machine &machine)
{
    const auto chosen = suites::chosen(allInstallations(machine), machine);
    if (!chosen)
        return std::nullopt;
    return suites::stateOf(*chosen, machine, doctor::Deadline(lookLimit));
}

} // namespace helio
