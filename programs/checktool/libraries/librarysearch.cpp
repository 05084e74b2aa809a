#include "programs/checktool/libraries/librarysearch.h"

#include <QFile>
#include <QStandardPaths>

#include "programs/checktool/machine/machine.h"
#include "programs/process/boundedprogram.h"

namespace programs {

namespace {

constexpr int cacheListMs = 10000;
const QStringList administratorDirectories = {QStringLiteral("/sbin"), QStringLiteral("/usr/sbin"),
                                              QStringLiteral("/usr/bin")};

QStringList systemLibraryDirectories()
{
    QStringList directories;
    for (const char *directory : {"/lib/" LIBRARY_ARCHITECTURE, "/usr/lib/" LIBRARY_ARCHITECTURE,
                                  "/lib64", "/usr/lib64", "/lib", "/usr/lib"})
        directories.append(QString::fromLatin1(directory));
    return directories;
}

} // namespace

LibrarySearch LibrarySearch::of(const Machine &machine)
{
    LibrarySearch search;
    // The loader accepts both separators.
    search.userDirectories = machine.variable("LD_LIBRARY_PATH")
                                 .replace(QLatin1Char(';'), QLatin1Char(':'))
                                 .split(QLatin1Char(':'), Qt::SkipEmptyParts);
    search.systemDirectories = systemLibraryDirectories();
    const QString program =
        QStandardPaths::findExecutable(QStringLiteral("ldconfig"), administratorDirectories);
    if (!program.isEmpty()) {
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        search.cache = parseLoaderCache(
            runBounded(program, {QStringLiteral("-p")}, environment, cacheListMs).output);
    }
    return search;
}

QHash<QString, QStringList> parseLoaderCache(const QByteArray &text)
{
    QHash<QString, QStringList> paths;
    const QList<QByteArray> lines = text.split('\n');
    for (const QByteArray &line : lines) {
        const int nameEnd = line.indexOf(" (");
        const int arrow = line.indexOf(" => ");
        if (!line.startsWith('\t') || nameEnd < 0 || arrow < nameEnd)
            continue;
        paths[QFile::decodeName(line.mid(1, nameEnd - 1))].append(
            QFile::decodeName(line.mid(arrow + 4)));
    }
    return paths;
}

} // namespace programs
