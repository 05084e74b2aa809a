#include <QDirIterator>
#include <QFileInfo>

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/libraries/libraryclosure.h"
#include "texts/texts.h"

namespace programs {

namespace {

constexpr int mostLibraries = 5000;
constexpr int mostWanters = 4;

QString wanters(QStringList paths)
{
    paths.removeDuplicates();
    const int more = paths.size() - mostWanters;
    QStringList names;
    for (const QString &path : qAsConst(paths))
        names.append(QFileInfo(path).fileName());
    if (more <= 0)
        return names.join(QStringLiteral(", "));
    return texts::tr("%1 and %2 more")
        .arg(names.mid(0, mostWanters).join(QStringLiteral(", ")), QString::number(more));
}

QStringList librariesBelow(const QString &directory)
{
    QStringList paths;
    QDirIterator files(directory, {QStringLiteral("*.so"), QStringLiteral("*.so.*")},
                       QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext() && paths.size() < mostLibraries)
        paths.append(files.next());
    paths.sort();
    return paths;
}

/// The ELF file of this program, for its processor.
ElfFile ownFile()
{
    return readElf(QStringLiteral("/proc/self/exe"));
}

/// Whether the file could be read.
bool reportState(const QString &path, const ElfFile &file, Findings &findings)
{
    switch (file.state) {
    case ElfFile::State::Good:
        if (!file.isForSameMachine(ownFile()))
            findings.problem(texts::tr("%1 is made for another kind of processor.").arg(path),
                             texts::tr("Install the suite for this machine's processor."));
        return true;
    case ElfFile::State::Unreadable:
        findings.problem(
            texts::tr("%1 cannot be read.").arg(path),
            texts::tr("Give yourself the right to read it, or install the suite again."));
        return false;
    case ElfFile::State::Foreign:
    case ElfFile::State::Broken:
        break;
    }
    findings.problem(
        texts::tr("%1 is damaged: it is not a program or library that Linux can load.").arg(path),
        texts::tr("Install the suite again."));
    return false;
}

void reportMissing(const LibraryClosure &closure, Findings &findings)
{
    const QMap<QString, QStringList> &missing = closure.missing();
    for (auto library = missing.begin(); library != missing.end(); ++library)
        findings.problem(texts::tr("The library %1 is missing; %2 needs it.")
                             .arg(library.key(), wanters(library.value())),
                         texts::tr("Install the package that has this library, or install the "
                                   "suite again."));
    const QMap<QString, QStringList> &foreign = closure.foreign();
    for (auto library = foreign.begin(); library != foreign.end(); ++library)
        findings.problem(
            texts::tr("The library %1 is there for another kind of processor only; %2 needs it.")
                .arg(library.key(), wanters(library.value())),
            texts::tr("Install the package of this library for the same processor as the suite."));
    const QMap<QString, QStringList> &broken = closure.broken();
    for (auto library = broken.begin(); library != broken.end(); ++library)
        findings.problem(texts::tr("The library %1 is damaged; %2 needs it.")
                             .arg(library.key(), wanters(library.value())),
                         texts::tr("Install the package of this library again."));
}

void reportVersions(const LibraryClosure &closure, Findings &findings)
{
    QMap<QString, QStringList> tooOld;
    for (const LibraryClosure::MissingVersion &missing : closure.missingVersions())
        tooOld[texts::tr("The library %1 is too old: it lacks %2")
                   .arg(missing.library, missing.version)]
            .append(missing.wanter);
    for (auto text = tooOld.begin(); text != tooOld.end(); ++text)
        findings.problem(texts::tr("%1, which %2 needs.").arg(text.key(), wanters(text.value())),
                         texts::tr("Bring the system up to date, or install a suite made for it."));
}

void reportClosure(const LibraryClosure &closure, Findings &findings)
{
    const int before = findings.problemCount();
    reportMissing(closure, findings);
    reportVersions(closure, findings);
    if (findings.problemCount() == before && !closure.paths().isEmpty())
        findings.fine(
            texts::tr("All %1 libraries and programs that were looked into can be loaded.")
                .arg(closure.paths().size()));
}

void addProgram(const QString &path, LibraryClosure *closure, Findings &findings)
{
    const QFileInfo program(path);
    if (!program.isFile()) {
        findings.problem(texts::tr("The program %1 is not there.").arg(path),
                         texts::tr("Install the suite again."));
        return;
    }
    if (!program.isExecutable())
        findings.problem(texts::tr("The program %1 may not be run.").arg(path),
                         texts::tr("Give yourself the right to run it: chmod +x."));
    QFile file(path);
    if (file.open(QIODevice::ReadOnly) && file.read(2) == "#!") {
        findings.note(texts::tr("%1 is a script, which loads no libraries itself.").arg(path));
        return;
    }
    reportState(path, closure->add(path), findings);
}

void checkFile(const LibrarySearch &search, const QString &path, Findings &findings)
{
    LibraryClosure closure(search);
    if (!QFileInfo(path).isFile()) {
        findings.problem(texts::tr("There is no file %1.").arg(path),
                         texts::tr("Give the full path of a program or library."));
        return;
    }
    if (reportState(path, closure.add(path), findings))
        reportClosure(closure, findings);
}

} // namespace

void checkLibraries(const Machine &machine, const QString &application, const QString &argument,
                    Findings &findings)
{
    const LibrarySearch search = LibrarySearch::of(machine);
    if (!argument.isEmpty()) {
        checkFile(search, argument, findings);
        return;
    }
    LibraryClosure closure(search);
    if (application.isEmpty() || application.contains(QLatin1Char('/')))
        findings.problem(
            texts::tr("“%1” is not the name of a program of the suite.").arg(application),
            texts::tr("Choose one of the suite's programs."));
    else
        addProgram(machine.officeDirectory + QLatin1Char('/') + application, &closure, findings);
    const QStringList libraries = librariesBelow(machine.officeDirectory);
    for (const QString &library : libraries)
        reportState(library, closure.add(library), findings);
    reportClosure(closure, findings);
}

} // namespace programs
