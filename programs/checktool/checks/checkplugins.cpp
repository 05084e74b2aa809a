#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/libraries/libraryclosure.h"
#include "programs/checktool/machine/shellword.h"
#include "texts/texts.h"

namespace programs {

namespace {

constexpr int mostFiles = 20000;
/// Browsers recognise a plug-in by the start of its file name.
const QStringList pluginNames = {QStringLiteral("np*.so"), QStringLiteral("libnp*.so")};
constexpr const char *systemDirectories[] = {
    "/usr/lib/mozilla/plugins",     "/usr/lib64/mozilla/plugins", "/usr/lib/firefox/plugins",
    "/usr/lib/firefox-esr/plugins", "/opt/firefox/plugins",       "/usr/lib/chromium/plugins",
    "/opt/google/chrome/plugins"};

QString userDirectory(const Machine &machine)
{
    return machine.home + QStringLiteral("/.mozilla/plugins");
}

/// In the search order of browsers.
QStringList browserDirectories(const Machine &machine, const QString &further)
{
    QStringList directories =
        machine.variable("MOZ_PLUGIN_PATH").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    directories.append(userDirectory(machine));
    for (const char *directory : systemDirectories)
        directories.append(machine.root + QString::fromLatin1(directory));
    if (!further.isEmpty())
        directories.append(further);
    return directories;
}

/// Plug-ins and links to plug-ins, broken ones included.
QFileInfoList pluginsIn(const QString &directory)
{
    return QDir(directory).entryInfoList(pluginNames, QDir::Files | QDir::System, QDir::Name);
}

/// Real paths of the suite's own plug-ins.
QStringList pluginsOfSuite(const Machine &machine)
{
    QStringList paths;
    QDirIterator files(machine.officeDirectory, pluginNames, QDir::Files,
                       QDirIterator::Subdirectories);
    for (int n = 0; files.hasNext() && n < mostFiles; ++n)
        paths.append(QFileInfo(files.next()).canonicalFilePath());
    paths.removeDuplicates();
    return paths;
}

/// Reports a plug-in that cannot be loaded.
void checkLoading(const LibrarySearch &search, const QFileInfo &plugin, Findings &findings)
{
    LibraryClosure closure(search);
    const ElfFile file = closure.add(plugin.filePath());
    const QStringList unusable = closure.unusable();
    if (file.state != ElfFile::State::Good)
        findings.problem(
            texts::tr("The plug-in %1 is damaged or cannot be read.").arg(plugin.filePath()),
            texts::tr("Install what it belongs to again."));
    else if (!unusable.isEmpty())
        findings.problem(
            texts::tr("The plug-in %1 cannot be loaded, because these libraries are missing, "
                      "damaged or too old: %2.")
                .arg(plugin.filePath(), unusable.join(QStringLiteral(", "))),
            texts::tr("Install the packages that have them."));
    else
        findings.fine(texts::tr("The plug-in %1 can be loaded.").arg(plugin.filePath()));
}

/// Real paths of the plug-ins that browsers find.
QStringList checkDirectory(const LibrarySearch &search, const QString &directory,
                           Findings &findings)
{
    if (!QFileInfo(directory).isReadable()) {
        findings.problem(texts::tr("The plug-in directory %1 cannot be read.").arg(directory),
                         texts::tr("Give yourself the right to read it: chmod u+rx %1.")
                             .arg(shellWord(directory)));
        return {};
    }
    QStringList paths;
    const QFileInfoList plugins = pluginsIn(directory);
    for (const QFileInfo &plugin : plugins) {
        if (plugin.exists()) {
            paths.append(plugin.canonicalFilePath());
            checkLoading(search, plugin, findings);
        } else {
            findings.problem(texts::tr("%1 is a link to %2, which is not there.")
                                 .arg(plugin.filePath(), plugin.symLinkTarget()),
                             texts::tr("Install what it belongs to again, or delete the link."));
        }
    }
    if (plugins.isEmpty())
        findings.note(texts::tr("The plug-in directory %1 has no plug-ins.").arg(directory));
    return paths;
}

void reportSuite(const Machine &machine, const QStringList &found, Findings &findings)
{
    const QStringList plugins = pluginsOfSuite(machine);
    if (plugins.isEmpty())
        findings.note(texts::tr("This installation of the suite has no browser plug-in (np*.so "
                                "below %1).")
                          .arg(machine.officeDirectory));
    for (const QString &plugin : plugins) {
        if (found.contains(plugin))
            findings.fine(texts::tr("Browsers find the suite's plug-in %1.").arg(plugin));
        else
            findings.problem(texts::tr("No browser finds the suite's plug-in %1.").arg(plugin),
                             texts::tr("Link it with: mkdir -p %2 && ln -s %1 %2.")
                                 .arg(shellWord(plugin), shellWord(userDirectory(machine))));
    }
}

} // namespace

void checkPlugins(const Machine &machine, const QString &, const QString &argument,
                  Findings &findings)
{
    const LibrarySearch search = LibrarySearch::of(machine);
    const QStringList directories = browserDirectories(machine, argument);
    bool isAnyThere = false;
    QStringList found;
    for (const QString &directory : directories) {
        if (!QFileInfo(directory).isDir())
            continue;
        isAnyThere = true;
        found += checkDirectory(search, directory, findings);
    }
    if (!argument.isEmpty() && !QFileInfo(argument).isDir())
        findings.problem(texts::tr("There is no directory %1.").arg(argument),
                         texts::tr("Give the full path of a directory."));
    if (!isAnyThere)
        findings.problem(
            texts::tr("None of the directories where browsers look for plug-ins is there: %1.")
                .arg(directories.join(QStringLiteral(", "))),
            texts::tr("Make one with: mkdir -p %1.").arg(shellWord(userDirectory(machine))));
    reportSuite(machine, found, findings);
    findings.note(texts::tr("Most browsers no longer load such plug-ins; without one that does, "
                            "documents do not open inside web pages."));
}

} // namespace programs
