#include <algorithm>

#include "doctor/editors/xml/wholexml.h"
#include "doctor/machine/filereading.h"
#include "doctor/machine/packedcopies.h"
#include "doctor/machine/processview.h"
#include "doctor/repairs/draft.h"
#include "doctor/repairs/kinds.h"
#include "suites/description.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 largestFile = 16 * 1024 * 1024;
constexpr int mostProcesses = 100000;

/// The words of /etc/os-release that name this distribution and those that it is derived from.
QStringList distributionsOf(const Machine &machine)
{
    QStringList words;
    const FileContent file =
        readFile(machine.located(QStringLiteral("/etc/os-release")), largestFile);
    for (const QByteArray &line : file.content.value_or(QByteArray()).split('\n')) {
        if (line.startsWith("ID=") || line.startsWith("ID_LIKE="))
            words += QString::fromUtf8(line.mid(line.indexOf('=') + 1))
                         .remove(QLatin1Char('"'))
                         .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    }
    return words;
}

/// "debian", "fedora", "suse" or "arch"; empty for another distribution.
QString familyOf(const Machine &machine)
{
    const QStringList words = distributionsOf(machine);
    if (words.contains(QLatin1String("debian")) || words.contains(QLatin1String("ubuntu")))
        return QStringLiteral("debian");
    if (words.contains(QLatin1String("fedora")) || words.contains(QLatin1String("rhel")))
        return QStringLiteral("fedora");
    const bool isSuse = std::any_of(words.begin(), words.end(), [](const QString &word) {
        return word.contains(QLatin1String("suse"));
    });
    if (isSuse)
        return QStringLiteral("suse");
    return words.contains(QLatin1String("arch")) ? QStringLiteral("arch") : QString();
}

QStringList installer(const QString &family)
{
    if (family == QLatin1String("debian"))
        return {QStringLiteral("apt-get"), QStringLiteral("install")};
    if (family == QLatin1String("fedora"))
        return {QStringLiteral("dnf"), QStringLiteral("install")};
    if (family == QLatin1String("suse"))
        return {QStringLiteral("zypper"), QStringLiteral("install")};
    return {QStringLiteral("pacman"), QStringLiteral("-S")};
}

/// @param tag a language such as "de-at"; a language may have a package of another name,
/// "spelling:de"
QString packageFor(const suites::Description &suite, const QString &purpose, const QString &tag,
                   const QString &family)
{
    const QString language = tag.section(QLatin1Char('-'), 0, 0);
    for (const QString &name :
         {purpose + QLatin1Char(':') + tag, purpose + QLatin1Char(':') + language}) {
        QString package = suite.packages.value(name).value(family);
        if (!package.isEmpty())
            return package;
    }
    QString package = suite.packages.value(purpose).value(family);
    return package.replace(QLatin1String("%1"), language);
}

QString planInstall(const Arguments &arguments, Draft &draft)
{
    const QString purpose = arguments.text("install");
    const suites::Description *suite = suites::descriptionNamed(arguments.text("suite"));
    const QString family = familyOf(draft.machine());
    const QString package =
        suite ? packageFor(*suite, purpose, arguments.text("language").toLower(), family)
              : QString();
    if (package.isEmpty())
        return texts::tr("no package for this is known on this distribution");
    draft.show(installer(family) + QStringList{package});
    return {};
}

QString planNotRunning(const Arguments &arguments, Draft &draft)
{
    const QString name = arguments.text("notRunning");
    const QString directory = draft.machine().located(QStringLiteral("/proc/"));
    const QByteArray mark = " (" + name.toUtf8().left(15) + ") ";
    for (const QString &entry : namesIn(directory, mostProcesses).value_or(QStringList())) {
        const bool isProcess = std::all_of(entry.begin(), entry.end(),
                                           [](QChar character) { return character.isDigit(); });
        const FileContent stat =
            isProcess ? readFile(directory + entry + QStringLiteral("/stat"), largestFile)
                      : FileContent();
        if (stat.content.value_or(QByteArray()).contains(mark) &&
            seesHome(draft.machine(), entry.toLongLong()))
            return texts::tr("%1 (process %2) is running: close it first").arg(name, entry);
    }
    return {};
}

/// The newest copy that is whole XML.
QString planRestorePacked(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("restorePacked");
    const QString from = arguments.text("from");
    const QVector<QByteArray> copies =
        packedCopies(draft.content(from).value_or(QByteArray()), largestFile);
    const auto whole = std::find_if(copies.begin(), copies.end(),
                                    [](const QByteArray &copy) { return xmlState(copy).isWhole; });
    if (whole == copies.end())
        return texts::tr("%1 has no copy that is whole").arg(from);
    return draft.write(path, *whole);
}

QString planKeepWholeItems(const Arguments &arguments, Draft &draft)
{
    const QString path = arguments.text("keepWholeItems");
    const std::optional<QByteArray> content = draft.content(path);
    if (!content)
        return texts::tr("%1 cannot be read").arg(path);
    return draft.write(path, wholeItems(*content));
}

constexpr Parameter installParameters[] = {{"install", ParameterType::Text, true},
                                           {"suite", ParameterType::Text, true},
                                           {"language", ParameterType::Text}};
constexpr Parameter notRunningParameters[] = {{"notRunning", ParameterType::Text, true}};
constexpr Parameter restoreParameters[] = {{"restorePacked", ParameterType::Path, true},
                                           {"from", ParameterType::Path, true}};
constexpr Parameter keepParameters[] = {{"keepWholeItems", ParameterType::Path, true}};

} // namespace

const StepKind installStep{"install", installParameters, &planInstall};
const StepKind notRunningStep{"notRunning", notRunningParameters, &planNotRunning};
const StepKind restorePackedStep{"restorePacked", restoreParameters, &planRestorePacked};
const StepKind keepWholeItemsStep{"keepWholeItems", keepParameters, &planKeepWholeItems};

} // namespace doctor
