#include <QFile>
#include <QHash>
#include <QSet>

#include <array>
#include <cstring>

#include <elf.h>
#include <link.h>

#include "doctor/machine/filereading.h"
#include "doctor/machine/pathpattern.h"
#include "doctor/probes/kinds.h"

namespace doctor {

namespace {

constexpr char cacheFile[] = "/etc/ld.so.cache";
constexpr char cacheMagic[] = "glibc-ld.so.cache1.1";
constexpr qint64 largestCache = 16 * 1024 * 1024;
constexpr int cacheHeader = 48;
constexpr int cacheEntry = 24;
constexpr int mostEntries = 256;
constexpr int longestTable = 1024 * 1024;
constexpr int mostLibraries = 500;
constexpr std::array<const char *, 4> usualFolders{"/lib64/", "/usr/lib64/", "/lib/", "/usr/lib/"};

/// A structure at an offset; zeros where the bytes end.
template<class Structure>
Structure structureAt(const QByteArray &bytes, qint64 offset)
{
    Structure structure{};
    if (offset >= 0 && offset + static_cast<qint64>(sizeof structure) <= bytes.size())
        std::memcpy(&structure, bytes.constData() + offset, sizeof structure);
    return structure;
}

QString textAt(const QByteArray &bytes, qint64 offset)
{
    if (offset < 0 || offset >= bytes.size())
        return {};
    const int end = bytes.indexOf('\0', static_cast<int>(offset));
    return QFile::decodeName(
        bytes.mid(static_cast<int>(offset), end < 0 ? -1 : end - static_cast<int>(offset)));
}

/// The paths that the dynamic linker's cache has for each name.
QHash<QString, QStringList> linkerCache(const Machine &machine)
{
    const QByteArray bytes = readFile(machine.located(QLatin1String(cacheFile)), largestCache)
                                 .content.value_or(QByteArray());
    QHash<QString, QStringList> paths;
    if (!bytes.startsWith(cacheMagic))
        return paths;
    const auto count = structureAt<quint32>(bytes, static_cast<qint64>(sizeof cacheMagic) - 1);
    for (qint64 i = 0; i < count && cacheHeader + (i + 1) * cacheEntry <= bytes.size(); ++i) {
        const qint64 entry = cacheHeader + i * cacheEntry;
        const QString name = textAt(bytes, structureAt<quint32>(bytes, entry + 4));
        paths[name].append(textAt(bytes, structureAt<quint32>(bytes, entry + 8)));
    }
    return paths;
}

struct Library
{
    bool isOfThisMachine = false;
    QStringList needed;
};

/// What the dynamic linker would read of a library, which is not loaded: that would run its code.
Library libraryIn(const QString &located)
{
    Library library;
    const auto part = [&located](qint64 offset, qint64 length) {
        return readPart(located, offset, std::min<qint64>(length, longestTable))
            .content.value_or(QByteArray());
    };
    const auto header = structureAt<ElfW(Ehdr)>(part(0, sizeof(ElfW(Ehdr))), 0);
    const auto own =
        structureAt<ElfW(Ehdr)>(readPart(QStringLiteral("/proc/self/exe"), 0, sizeof(ElfW(Ehdr)))
                                    .content.value_or(QByteArray()),
                                0);
    library.isOfThisMachine = std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
                              header.e_ident[EI_CLASS] == own.e_ident[EI_CLASS] &&
                              header.e_machine == own.e_machine;
    if (!library.isOfThisMachine)
        return library;
    const int count = std::min<int>(header.e_phnum, mostEntries);
    const QByteArray segments =
        part(static_cast<qint64>(header.e_phoff), count * qint64(sizeof(ElfW(Phdr))));
    QVector<ElfW(Phdr)> loaded;
    QByteArray dynamic;
    for (int i = 0; i < count; ++i) {
        const auto segment = structureAt<ElfW(Phdr)>(segments, i * qint64(sizeof(ElfW(Phdr))));
        if (segment.p_type == PT_LOAD)
            loaded.append(segment);
        else if (segment.p_type == PT_DYNAMIC)
            dynamic =
                part(static_cast<qint64>(segment.p_offset), static_cast<qint64>(segment.p_filesz));
    }
    QVector<ElfW(Dyn)> entries;
    ElfW(Addr) table = 0;
    for (qint64 at = 0; at + qint64(sizeof(ElfW(Dyn))) <= dynamic.size(); at += sizeof(ElfW(Dyn))) {
        const auto entry = structureAt<ElfW(Dyn)>(dynamic, at);
        if (entry.d_tag == DT_STRTAB)
            table = entry.d_un.d_ptr;
        else if (entry.d_tag == DT_NEEDED && entries.size() < mostEntries)
            entries.append(entry);
    }
    for (const ElfW(Phdr) & segment : qAsConst(loaded)) {
        if (table < segment.p_vaddr || table - segment.p_vaddr >= segment.p_filesz)
            continue;
        const QByteArray names =
            part(static_cast<qint64>(segment.p_offset + table - segment.p_vaddr), longestTable);
        for (const ElfW(Dyn) & entry : qAsConst(entries))
            library.needed.append(textAt(names, static_cast<qint64>(entry.d_un.d_val)));
    }
    return library;
}

/// Finds a library and everything that it needs, as the dynamic linker does.
class LibrarySearch
{
public:
    LibrarySearch(const Machine &machine, const Deadline &deadline)
        : m_machine(machine), m_deadline(deadline), m_cache(linkerCache(machine))
    {
    }

    /// Empty if there is none for this kind of machine.
    QString find(const QString &name, const QString &folder) const
    {
        QStringList candidates = m_cache.value(name);
        if (name.startsWith(QLatin1Char('/')))
            candidates = QStringList{name};
        if (!folder.isEmpty())
            candidates.append(folder + QLatin1Char('/') + name);
        for (const char *usual : usualFolders)
            candidates.append(QLatin1String(usual) + name);
        for (const QString &candidate : qAsConst(candidates)) {
            if (pathProblem(candidate).isEmpty() &&
                libraryIn(m_machine.located(candidate)).isOfThisMachine)
                return candidate;
        }
        return {};
    }

    /// The names of what the library at @p path needs and what is not there.
    QStringList missing(const QString &path)
    {
        QStringList missing;
        for (const QString &name : libraryIn(m_machine.located(path)).needed) {
            if (m_seen.contains(name) || m_seen.size() >= mostLibraries || m_deadline.isOver())
                continue;
            m_seen.insert(name);
            const QString found = find(name, path.section(QLatin1Char('/'), 0, -2));
            if (found.isEmpty())
                missing.append(name);
            else
                missing += this->missing(found);
        }
        return missing;
    }

private:
    const Machine &m_machine;
    const Deadline &m_deadline;
    const QHash<QString, QStringList> m_cache;
    QSet<QString> m_seen;
};

Observed lookAtLibrary(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("library");
    LibrarySearch search(looking.machine, looking.deadline);
    const QString path = search.find(name, QString());
    const QStringList missing = path.isEmpty() ? QStringList() : search.missing(path);
    Observation seen;
    if (!path.isEmpty())
        seen.where.append({path, 0, 0});
    seen.values = {
        {QStringLiteral("name"), Value::ofText(name)},
        {QStringLiteral("path"), Value::ofText(path)},
        {QStringLiteral("found"), Value::ofFlag(!path.isEmpty())},
        {QStringLiteral("missing"), Value::ofText(missing.join(QStringLiteral(", ")))},
        {QStringLiteral("loadable"), Value::ofFlag(!path.isEmpty() && missing.isEmpty())}};
    return {{seen}, {}};
}

constexpr Parameter parameters[] = {{"library", ParameterType::Text, true}};
constexpr ProbeValue values[] = {{"name", ValueType::Text},
                                 {"path", ValueType::Text},
                                 {"found", ValueType::Flag},
                                 {"missing", ValueType::Text},
                                 {"loadable", ValueType::Flag}};

} // namespace

const ProbeKind libraryKind{"library", parameters, values, &lookAtLibrary};

} // namespace doctor
