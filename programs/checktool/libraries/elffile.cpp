#include "programs/checktool/libraries/elffile.h"

#include <QFile>

#include <algorithm>
#include <memory>
#include <vector>

#include <elf.h>
#include <fcntl.h>
#include <gelf.h>
#include <sys/stat.h>
#include <unistd.h>

namespace programs {

namespace {

/// More than any real file has; a hostile one could claim billions.
constexpr std::size_t mostEntries = 10000;
constexpr std::size_t longestText = 4096;
constexpr std::size_t mostVersionBytes = 16 * 1024 * 1024;

struct ElfCloser
{
    void operator()(Elf *elf) const { elf_end(elf); }
};

class Reader
{
public:
    Reader(Elf *elf, quint64 size) : m_elf(elf), m_size(size) {}

    /// Whether the file is consistent.
    bool read(ElfFile *file);

private:
    bool readHeader(ElfFile *file) const;
    bool findDynamic();
    bool readDynamic(ElfFile *file);
    bool readVersions(ElfFile *file);
    void readNeededVersions(const GElf_Shdr &section, Elf_Data *data, ElfFile *file);
    void readDefinedVersions(const GElf_Shdr &section, Elf_Data *data, ElfFile *file);
    bool take(const GElf_Dyn &entry, ElfFile *file) const;
    QByteArray text(quint64 offset) const;
    QString name(std::size_t section, std::size_t offset) const;
    quint64 fileOffset(quint64 address) const;

    Elf *m_elf;
    quint64 m_size;
    GElf_Phdr m_dynamic = {};
    quint64 m_strings = 0;
    quint64 m_stringsSize = 0;
};

bool Reader::readHeader(ElfFile *file) const
{
    GElf_Ehdr header;
    if (!gelf_getehdr(m_elf, &header))
        return false;
    file->machine = header.e_machine;
    file->width = gelf_getclass(m_elf);
    return header.e_type == ET_EXEC || header.e_type == ET_DYN;
}

bool Reader::findDynamic()
{
    std::size_t count = 0;
    if (elf_getphdrnum(m_elf, &count) != 0)
        return false;
    for (std::size_t n = 0; n < std::min(count, mostEntries); ++n) {
        GElf_Phdr header;
        if (!gelf_getphdr(m_elf, static_cast<int>(n), &header))
            return false;
        if (header.p_type == PT_LOAD &&
            (header.p_filesz > m_size || header.p_offset > m_size - header.p_filesz))
            return false;
        if (header.p_type == PT_DYNAMIC)
            m_dynamic = header;
    }
    return true;
}

quint64 Reader::fileOffset(quint64 address) const
{
    std::size_t count = 0;
    elf_getphdrnum(m_elf, &count);
    for (std::size_t n = 0; n < std::min(count, mostEntries); ++n) {
        GElf_Phdr header;
        if (gelf_getphdr(m_elf, static_cast<int>(n), &header) && header.p_type == PT_LOAD &&
            address >= header.p_vaddr && address - header.p_vaddr < header.p_filesz)
            return header.p_offset + (address - header.p_vaddr);
    }
    return m_size;
}

QByteArray Reader::text(quint64 offset) const
{
    if (offset >= m_stringsSize)
        return {};
    const std::size_t length = std::min<quint64>(m_stringsSize - offset, longestText);
    const Elf_Data *data =
        elf_getdata_rawchunk(m_elf, static_cast<int64_t>(m_strings + offset), length, ELF_T_BYTE);
    if (!data)
        return {};
    const QByteArray bytes(static_cast<const char *>(data->d_buf), static_cast<int>(data->d_size));
    const int end = bytes.indexOf('\0');
    return end < 0 ? QByteArray() : bytes.left(end);
}

bool Reader::take(const GElf_Dyn &entry, ElfFile *file) const
{
    if (entry.d_tag != DT_NEEDED && entry.d_tag != DT_SONAME && entry.d_tag != DT_RPATH &&
        entry.d_tag != DT_RUNPATH)
        return true;
    const QString value = QFile::decodeName(text(entry.d_un.d_val));
    if (value.isEmpty() && (entry.d_tag == DT_NEEDED || entry.d_tag == DT_SONAME))
        return false;
    const QStringList directories = value.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    if (entry.d_tag == DT_NEEDED)
        file->needed.append(value);
    else if (entry.d_tag == DT_SONAME)
        file->name = value;
    else if (entry.d_tag == DT_RPATH)
        file->earlySearch = directories;
    else
        file->lateSearch = directories;
    return true;
}

bool Reader::readDynamic(ElfFile *file)
{
    if (m_dynamic.p_type != PT_DYNAMIC)
        return true;
    if (m_dynamic.p_filesz > std::min<quint64>(m_size, mostEntries * sizeof(GElf_Dyn)))
        return false;
    Elf_Data *data = elf_getdata_rawchunk(m_elf, static_cast<int64_t>(m_dynamic.p_offset),
                                          m_dynamic.p_filesz, ELF_T_DYN);
    if (!data)
        return false;
    std::vector<GElf_Dyn> entries;
    GElf_Dyn entry;
    for (std::size_t n = 0; n < mostEntries && gelf_getdyn(data, static_cast<int>(n), &entry) &&
                            entry.d_tag != DT_NULL;
         ++n) {
        entries.push_back(entry);
        if (entry.d_tag == DT_STRTAB)
            m_strings = fileOffset(entry.d_un.d_ptr);
        else if (entry.d_tag == DT_STRSZ)
            m_stringsSize = entry.d_un.d_val;
    }
    m_stringsSize = m_strings < m_size ? std::min(m_stringsSize, m_size - m_strings) : 0;
    return std::all_of(entries.begin(), entries.end(),
                       [&](const GElf_Dyn &each) { return take(each, file); });
}

QString Reader::name(std::size_t section, std::size_t offset) const
{
    return QFile::decodeName(elf_strptr(m_elf, section, offset));
}

void Reader::readNeededVersions(const GElf_Shdr &section, Elf_Data *data, ElfFile *file)
{
    std::size_t offset = 0;
    GElf_Verneed need;
    for (std::size_t n = 0;
         n < mostEntries && gelf_getverneed(data, static_cast<int>(offset), &need); ++n) {
        const QString library = name(section.sh_link, need.vn_file);
        std::size_t at = offset + need.vn_aux;
        GElf_Vernaux version;
        for (std::size_t m = 0; m < std::min<std::size_t>(need.vn_cnt, mostEntries) &&
                                gelf_getvernaux(data, static_cast<int>(at), &version);
             ++m) {
            if ((version.vna_flags & VER_FLG_WEAK) == 0)
                file->neededVersions[library].append(name(section.sh_link, version.vna_name));
            at += version.vna_next;
        }
        if (need.vn_next == 0)
            return;
        offset += need.vn_next;
    }
}

void Reader::readDefinedVersions(const GElf_Shdr &section, Elf_Data *data, ElfFile *file)
{
    std::size_t offset = 0;
    GElf_Verdef definition;
    for (std::size_t n = 0;
         n < mostEntries && gelf_getverdef(data, static_cast<int>(offset), &definition); ++n) {
        GElf_Verdaux first;
        if (gelf_getverdaux(data, static_cast<int>(offset + definition.vd_aux), &first))
            file->definedVersions.insert(name(section.sh_link, first.vda_name));
        if (definition.vd_next == 0)
            return;
        offset += definition.vd_next;
    }
}

/// A stripped file may lack sections; its versions are unknown then.
bool Reader::readVersions(ElfFile *file)
{
    Elf_Scn *section = nullptr;
    std::size_t count = 0;
    while ((section = elf_nextscn(m_elf, section)) && ++count < mostEntries) {
        GElf_Shdr header;
        if (!gelf_getshdr(section, &header))
            return false;
        if (header.sh_type != SHT_GNU_verneed && header.sh_type != SHT_GNU_verdef)
            continue;
        if (header.sh_size > std::min<quint64>(m_size, mostVersionBytes))
            return false;
        Elf_Data *data = elf_getdata(section, nullptr);
        if (!data)
            return false;
        if (header.sh_type == SHT_GNU_verneed)
            readNeededVersions(header, data, file);
        else
            readDefinedVersions(header, data, file);
    }
    return true;
}

bool Reader::read(ElfFile *file)
{
    return readHeader(file) && findDynamic() && readDynamic(file) && readVersions(file);
}

} // namespace

bool ElfFile::isForSameMachine(const ElfFile &other) const
{
    return machine == other.machine && width == other.width;
}

ElfFile readElf(int descriptor)
{
    ElfFile file;
    struct stat information = {};
    if (::fstat(descriptor, &information) != 0 || !S_ISREG(information.st_mode))
        return file;
    elf_version(EV_CURRENT);
    const std::unique_ptr<Elf, ElfCloser> elf(elf_begin(descriptor, ELF_C_READ, nullptr));
    if (!elf || elf_kind(elf.get()) != ELF_K_ELF) {
        file.state = ElfFile::State::Foreign;
        return file;
    }
    const bool isWhole = Reader(elf.get(), static_cast<quint64>(information.st_size)).read(&file);
    file.state = isWhole ? ElfFile::State::Good : ElfFile::State::Broken;
    return file;
}

ElfFile readElf(const QString &path)
{
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return {};
    ElfFile file = readElf(descriptor);
    ::close(descriptor);
    return file;
}

} // namespace programs
