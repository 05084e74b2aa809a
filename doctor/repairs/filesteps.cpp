#include <QFile>

#include <sys/stat.h>

#include "doctor/conditions/units.h"
#include "doctor/machine/filereading.h"
#include "doctor/repairs/draft.h"
#include "doctor/repairs/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr mode_t usualDirectoryMode = 0755;
constexpr mode_t rightsMask = 07777;
constexpr int mostAside = 1000;
constexpr qint64 largestLock = 4096;
constexpr char asideEnding[] = ".aside";

std::optional<mode_t> modeOfFile(const QString &path)
{
    struct stat state;
    if (stat(QFile::encodeName(path).constData(), &state) != 0)
        return std::nullopt;
    return state.st_mode & rightsMask;
}

QString planAside(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("aside");
    QString target = path + QLatin1String(asideEnding);
    for (int i = 2; draft.exists(target); ++i) {
        if (i > mostAside)
            return texts::tr("there are too many files aside of %1").arg(path);
        target = path + QLatin1String(asideEnding) + QString::number(i);
    }
    return draft.move(path, target);
}

QString copied(const QString &from, const QString &to, bool replace, std::optional<mode_t> mode,
               Draft &draft)
{
    const std::optional<QByteArray> content = draft.content(from);
    if (!content)
        return texts::tr("%1 cannot be read").arg(from);
    if (draft.exists(to) && !replace)
        return texts::tr("%1 is there already").arg(to);
    return draft.write(to, *content, mode ? mode : modeOfFile(draft.machine().located(from)));
}

QString planRestore(const Arguments &arguments, Draft &draft)
{
    return copied(arguments.text("from"), arguments.text("restore"), true, std::nullopt, draft);
}

QString planCopy(const Arguments &arguments, Draft &draft)
{
    return copied(arguments.text("copy"), arguments.text("to"), arguments.flag("replace"),
                  changedMode(0, arguments.text("mode")), draft);
}

QString planWrite(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("write");
    if (draft.exists(path))
        return texts::tr("%1 is there already").arg(path);
    return draft.write(path, arguments.text("content").toUtf8());
}

QString planRemove(const Arguments &arguments, Draft &draft)
{
    return draft.remove(arguments.text("remove"));
}

/// Only if the process that the lock names has ended.
QString planUnlock(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("unlock");
    const QByteArray content =
        readFile(draft.machine().located(path), largestLock).content.value_or(QByteArray());
    const qint64 process = content.split('\n').value(0).trimmed().toLongLong();
    if (process <= 0)
        return texts::tr("%1 does not say which process it belongs to").arg(path);
    if (QFile::exists(draft.machine().located(QStringLiteral("/proc/%1").arg(process))))
        return texts::tr("process %1, which holds %2, is running").arg(process).arg(path);
    return draft.remove(path);
}

QString planLink(const Arguments &arguments, Draft &draft)
{
    return draft.makeLink(arguments.text("link"), arguments.text("to"));
}

QString planDirectory(const Arguments &arguments, Draft &draft)
{
    const std::optional<unsigned> mode = changedMode(0, arguments.text("mode"));
    return draft.makeDirectory(arguments.text("directory"), mode.value_or(usualDirectoryMode));
}

QString planRights(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("rights");
    const std::optional<mode_t> mode = modeOfFile(draft.machine().located(path));
    if (!mode)
        return texts::tr("%1 is not there").arg(path);
    std::optional<mode_t> wanted;
    if (arguments.has("mode"))
        wanted = changedMode(*mode, arguments.text("mode"));
    std::optional<uid_t> owner;
    std::optional<gid_t> group;
    if (arguments.has("owner")) {
        owner = userNamed(draft.machine(), arguments.text("owner"));
        if (!owner)
            return texts::tr("there is no user %1").arg(arguments.text("owner"));
        group = accountOf(draft.machine(), *owner).group;
    }
    return draft.changeRights(path, wanted, owner, group);
}

QString planEnd(const Arguments &arguments, Draft &draft)
{
    return draft.end(static_cast<qint64>(arguments.number("end", 0)));
}

QString planShow(const Arguments &arguments, Draft &draft)
{
    draft.show(arguments.texts("show"));
    return {};
}

constexpr Parameter asideParameters[] = {{"aside", ParameterType::Path, true}};
constexpr Parameter restoreParameters[] = {{"restore", ParameterType::Path, true},
                                           {"from", ParameterType::Path, true}};
constexpr Parameter copyParameters[] = {{"copy", ParameterType::Path, true},
                                        {"to", ParameterType::Path, true},
                                        {"replace", ParameterType::Flag},
                                        {"mode", ParameterType::Mode}};
constexpr Parameter writeParameters[] = {{"write", ParameterType::Path, true},
                                         {"content", ParameterType::Text, true}};
constexpr Parameter removeParameters[] = {{"remove", ParameterType::Path, true}};
constexpr Parameter unlockParameters[] = {{"unlock", ParameterType::Path, true}};
constexpr Parameter linkParameters[] = {{"link", ParameterType::Path, true},
                                        {"to", ParameterType::Path, true}};
constexpr Parameter directoryParameters[] = {{"directory", ParameterType::Path, true},
                                             {"mode", ParameterType::Mode}};
constexpr Parameter rightsParameters[] = {{"rights", ParameterType::Path, true},
                                          {"mode", ParameterType::Mode},
                                          {"owner", ParameterType::Text}};
constexpr Parameter endParameters[] = {{"end", ParameterType::Number, true}};
constexpr Parameter showParameters[] = {{"show", ParameterType::Texts, true}};

} // namespace

const StepKind asideStep{"aside", asideParameters, &planAside};
const StepKind restoreStep{"restore", restoreParameters, &planRestore};
const StepKind copyStep{"copy", copyParameters, &planCopy};
const StepKind writeStep{"write", writeParameters, &planWrite};
const StepKind removeStep{"remove", removeParameters, &planRemove};
const StepKind unlockStep{"unlock", unlockParameters, &planUnlock};
const StepKind linkStep{"link", linkParameters, &planLink};
const StepKind directoryStep{"directory", directoryParameters, &planDirectory};
const StepKind rightsStep{"rights", rightsParameters, &planRights};
const StepKind endStep{"end", endParameters, &planEnd};
const StepKind showStep{"show", showParameters, &planShow};

} // namespace doctor
