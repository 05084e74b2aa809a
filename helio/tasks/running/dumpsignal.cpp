#include "helio/tasks/running/dumpsignal.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <csignal>
#include <optional>

#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace helio {

namespace {

struct Signal
{
    int number;
    const char *name;
};
/// Those that end a program on their own, or by somebody's hand.
constexpr std::array<Signal, 12> knownSignals{{{SIGHUP, "SIGHUP"},
                                               {SIGQUIT, "SIGQUIT"},
                                               {SIGILL, "SIGILL"},
                                               {SIGTRAP, "SIGTRAP"},
                                               {SIGABRT, "SIGABRT"},
                                               {SIGBUS, "SIGBUS"},
                                               {SIGFPE, "SIGFPE"},
                                               {SIGSEGV, "SIGSEGV"},
                                               {SIGPIPE, "SIGPIPE"},
                                               {SIGTERM, "SIGTERM"},
                                               {SIGXCPU, "SIGXCPU"},
                                               {SIGSYS, "SIGSYS"}}};

constexpr quint32 exceptionStream = 6;
constexpr quint32 mostParts = 512;
constexpr qint64 largestNotes = 1 << 20;

/// Bytes of a dump, which may be cut off anywhere.
class Dump
{
public:
    explicit Dump(QFile &file) : m_file(file) {}

    template<typename Value>
    std::optional<Value> at(quint64 place)
    {
        Value value{};
        if (place > quint64(m_file.size()) || !m_file.seek(qint64(place)) ||
            m_file.read(reinterpret_cast<char *>(&value), sizeof value) != qint64(sizeof value))
            return std::nullopt;
        return value;
    }

    quint32 word(quint64 place) { return qFromLittleEndian(at<quint32>(place).value_or(0)); }

private:
    QFile &m_file;
};

QString nameOf(quint32 number)
{
    const auto *const found =
        std::find_if(knownSignals.begin(), knownSignals.end(),
                     [number](const Signal &known) { return quint32(known.number) == number; });
    return found == knownSignals.end() ? QString() : QLatin1String(found->name);
}

/// A header with the place of a list of streams, one of which has the signal as exception code.
QString ofMinidump(Dump &dump)
{
    const quint32 count = std::min(dump.word(8), mostParts);
    const quint64 list = dump.word(12);
    for (quint64 index = 0; index < count; ++index) {
        const quint64 stream = list + index * 12;
        if (dump.word(stream) == exceptionStream)
            return nameOf(dump.word(quint64(dump.word(stream + 8)) + 8));
    }
    return {};
}

/// The notes of a core begin with the state of the thread that got the signal.
QString ofNotes(Dump &dump, const Elf64_Phdr &notes)
{
    const quint64 end = notes.p_offset + quint64(std::min<quint64>(notes.p_filesz, largestNotes));
    quint64 place = notes.p_offset;
    while (place < end) {
        const auto note = dump.at<Elf64_Nhdr>(place);
        if (!note)
            return {};
        const quint64 content =
            place + sizeof *note + ((quint64(note->n_namesz) + 3) & ~quint64(3));
        if (note->n_type == NT_PRSTATUS)
            return nameOf(dump.word(content));
        place = content + ((quint64(note->n_descsz) + 3) & ~quint64(3));
    }
    return {};
}

QString ofCore(Dump &dump)
{
    const auto header = dump.at<Elf64_Ehdr>(0);
    if (!header || header->e_ident[EI_CLASS] != ELFCLASS64 || header->e_type != ET_CORE ||
        header->e_phentsize != sizeof(Elf64_Phdr))
        return {};
    for (quint64 index = 0; index < header->e_phnum && index < mostParts; ++index) {
        const auto part = dump.at<Elf64_Phdr>(header->e_phoff + index * sizeof(Elf64_Phdr));
        if (part && part->p_type == PT_NOTE)
            return ofNotes(dump, *part);
    }
    return {};
}

/// Nothing waits for a pipe or a device.
bool openPlain(QFile &file, const QString &path)
{
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0)
        return false;
    struct stat state = {};
    if (::fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode) &&
        file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle))
        return true;
    ::close(descriptor);
    return false;
}

} // namespace

QString signalOfDump(const QString &path)
{
    QFile file;
    if (!openPlain(file, path))
        return {};
    const QByteArray magic = file.peek(4);
    Dump dump(file);
    if (magic == "MDMP")
        return ofMinidump(dump);
    return magic == QByteArray(ELFMAG, SELFMAG) ? ofCore(dump) : QString();
}

} // namespace helio
