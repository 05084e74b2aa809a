#include "programs/checktool/libraries/libraryclosure.h"

#include <QDir>
#include <QFileInfo>

namespace programs {

namespace {

constexpr int mostFiles = 20000;

/// Replaces the variables that a file may use in directories, such as $ORIGIN.
QStringList expanded(const QStringList &directories, const QString &path)
{
    const QString origin = QFileInfo(QFileInfo(path).canonicalFilePath()).path();
    const QString library = QStringLiteral("lib/" LIBRARY_ARCHITECTURE);
    QStringList result;
    for (QString directory : directories) {
        directory.replace(QLatin1String("${ORIGIN}"), origin)
            .replace(QLatin1String("$ORIGIN"), origin)
            .replace(QLatin1String("${LIB}"), library)
            .replace(QLatin1String("$LIB"), library);
        result.append(directory);
    }
    return result;
}

QStringList inEach(const QStringList &directories, const QString &name)
{
    QStringList paths;
    for (const QString &directory : directories)
        paths.append(directory + QLatin1Char('/') + name);
    return paths;
}

} // namespace

ElfFile LibraryClosure::add(const QString &path)
{
    const QString file = QFileInfo(path).canonicalFilePath();
    if (file.isEmpty())
        return {};
    if (m_files.contains(file))
        return m_files.value(file).file;
    ElfFile content = readElf(file);
    if (content.state != ElfFile::State::Good)
        return content;
    // DT_RPATH of the program counts for every library that it loads.
    if (m_files.isEmpty())
        m_programSearch =
            content.lateSearch.isEmpty() ? expanded(content.earlySearch, file) : QStringList();
    QStringList waiting{file};
    load(file, content, m_programSearch);
    while (!waiting.isEmpty()) {
        const QString wanter = waiting.takeFirst();
        const QStringList needed = m_files.value(wanter).file.needed;
        for (const QString &name : needed) {
            const int before = m_files.size();
            const QString known = m_pathsByName.value(name);
            if (known.isEmpty())
                find(name, wanter);
            if (m_files.size() > before && m_files.size() < mostFiles)
                waiting.append(m_pathsByName.value(name));
            compareVersions(name, wanter);
        }
    }
    return content;
}

QStringList LibraryClosure::unusable() const
{
    QStringList libraries = m_missing.keys() + m_foreign.keys() + m_broken.keys();
    for (const MissingVersion &missing : m_missingVersions)
        libraries.append(missing.library);
    libraries.removeDuplicates();
    return libraries;
}

void LibraryClosure::load(const QString &path, const ElfFile &file,
                          const QStringList &inheritedSearch)
{
    m_files.insert(path, {file, inheritedSearch});
    m_pathsByName.insert(QFileInfo(path).fileName(), path);
    if (!file.name.isEmpty())
        m_pathsByName.insert(file.name, path);
}

QStringList LibraryClosure::candidates(const QString &name, const QString &wanter) const
{
    if (name.contains(QLatin1Char('/')))
        return expanded({name}, wanter);
    const Loaded loaded = m_files.value(wanter);
    QStringList paths;
    if (loaded.file.lateSearch.isEmpty())
        paths += inEach(expanded(loaded.file.earlySearch, wanter) + loaded.inheritedSearch, name);
    paths += inEach(m_search.userDirectories, name);
    paths += inEach(expanded(loaded.file.lateSearch, wanter), name);
    paths += m_search.cache.value(name);
    return paths + inEach(m_search.systemDirectories, name);
}

void LibraryClosure::find(const QString &name, const QString &wanter)
{
    const Loaded loaded = m_files.value(wanter);
    bool isForeign = false;
    const QStringList paths = candidates(name, wanter);
    for (const QString &candidate : paths) {
        const QString path = QFileInfo(candidate).canonicalFilePath();
        if (path.isEmpty())
            continue;
        const ElfFile file = readElf(path);
        if (file.state != ElfFile::State::Good && file.state != ElfFile::State::Unreadable) {
            // The loader stops here as well.
            m_broken[path].append(wanter);
            return;
        }
        if (file.state == ElfFile::State::Good && file.isForSameMachine(loaded.file)) {
            QStringList inherited = loaded.inheritedSearch;
            if (loaded.file.lateSearch.isEmpty())
                inherited = expanded(loaded.file.earlySearch, wanter) + inherited;
            if (!m_files.contains(path))
                load(path, file, inherited);
            m_pathsByName.insert(name, path);
            return;
        }
        isForeign = isForeign || file.state == ElfFile::State::Good;
    }
    (isForeign ? m_foreign : m_missing)[name].append(wanter);
}

void LibraryClosure::compareVersions(const QString &name, const QString &wanter)
{
    const QString path = m_pathsByName.value(name);
    const ElfFile library = m_files.value(path).file;
    // A library without versions matches any.
    if (path.isEmpty() || library.definedVersions.isEmpty())
        return;
    const QStringList versions = m_files.value(wanter).file.neededVersions.value(name);
    for (const QString &version : versions) {
        if (!library.definedVersions.contains(version))
            m_missingVersions.append({version, path, wanter});
    }
}

} // namespace programs
