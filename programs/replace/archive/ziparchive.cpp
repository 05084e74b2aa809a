#include "programs/replace/archive/ziparchive.h"

#include <QtEndian>

#include <algorithm>
#include <climits>

#include <zlib.h>

#include "texts/texts.h"

namespace programs {

namespace {

constexpr int mostMembers = 20000;
constexpr int longestComment = 0xffff;
constexpr quint32 zip64 = 0xffffffff;

constexpr char headerMark[] = "PK\x03\x04";
constexpr char entryMark[] = "PK\x01\x02";
constexpr char endMark[] = "PK\x05\x06";
constexpr int headerSize = 30;
constexpr int entrySize = 46;
constexpr int endSize = 22;
constexpr int countInEnd = 10;
constexpr int directorySizeInEnd = 12;
constexpr int directoryInEnd = 16;

enum Method {
    Stored = 0,
    Deflated = 8
};

/// Bits of a member's flags.
enum Flag {
    Encrypted = 1,
    SizesFollow = 8 ///< behind the data
};

/// Where fields are, from the begin of the member's header; two bytes further in the directory.
enum HeaderField {
    Flags = 6,
    MethodField = 8,
    Checksum = 14,
    Packed = 18,
    Size = 22,
    NameLength = 26,
    ExtraLength = 28,
};
constexpr int inDirectory = 2;
constexpr int entryCommentLength = 32;
constexpr int entryBegin = 42;

template<typename Number>
Number number(const QByteArray &bytes, int position)
{
    return qFromLittleEndian<Number>(bytes.constData() + position);
}

template<typename Number>
void set(QByteArray &bytes, int position, Number value)
{
    qToLittleEndian(value, bytes.data() + position);
}

bool hasMark(const QByteArray &bytes, int position, const char *mark, int size)
{
    return position >= 0 && position <= bytes.size() - size &&
           bytes.mid(position, 4) == QByteArray(mark, 4);
}

quint32 checksumOf(const QByteArray &content)
{
    return static_cast<quint32>(::crc32(0, reinterpret_cast<const Bytef *>(content.constData()),
                                        static_cast<uInt>(content.size())));
}

/// Runs a zlib stream over all of @p input, with room for its output. The size of the output, or
/// nothing.
template<typename Step>
std::optional<int> passed(z_stream &stream, const QByteArray &input, QByteArray &output, Step step)
{
    QByteArray copy = input;
    stream.next_in = reinterpret_cast<Bytef *>(copy.data());
    stream.avail_in = static_cast<uInt>(copy.size());
    stream.next_out = reinterpret_cast<Bytef *>(output.data());
    stream.avail_out = static_cast<uInt>(output.size());
    if (step(&stream, Z_FINISH) != Z_STREAM_END)
        return std::nullopt;
    return static_cast<int>(stream.total_out);
}

std::optional<QByteArray> inflated(const QByteArray &packed, int size)
{
    z_stream stream = {};
    if (::inflateInit2(&stream, -MAX_WBITS) != Z_OK)
        return std::nullopt;
    // One byte more, so that more data than announced is seen.
    QByteArray content(size + 1, Qt::Uninitialized);
    const std::optional<int> made = passed(stream, packed, content, ::inflate);
    ::inflateEnd(&stream);
    content.chop(1);
    return made == size ? std::make_optional(content) : std::nullopt;
}

QByteArray deflated(const QByteArray &content)
{
    z_stream stream = {};
    ::deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL,
                   Z_DEFAULT_STRATEGY);
    QByteArray packed(static_cast<int>(::deflateBound(&stream, static_cast<uLong>(content.size()))),
                      Qt::Uninitialized);
    packed.truncate(passed(stream, content, packed, ::deflate).value_or(0));
    ::deflateEnd(&stream);
    return packed;
}

QString damage()
{
    return texts::tr("it is damaged: its ZIP archive cannot be read");
}

} // namespace

ZipArchive::ZipArchive(const QByteArray &bytes) : m_bytes(bytes)
{
    m_problem = read();
}

QStringList ZipArchive::names() const
{
    QStringList names;
    for (const Member &member : m_members)
        names.append(member.name);
    return names;
}

QString ZipArchive::read()
{
    int end = m_bytes.size() - endSize;
    while (end >= 0 && end >= m_bytes.size() - endSize - longestComment &&
           !hasMark(m_bytes, end, endMark, endSize))
        --end;
    if (!hasMark(m_bytes, end, endMark, endSize))
        return damage();
    const int count = number<quint16>(m_bytes, end + countInEnd);
    const quint32 directory = number<quint32>(m_bytes, end + directoryInEnd);
    if (count > mostMembers || directory > static_cast<quint32>(end))
        return texts::tr("its ZIP archive is of an unusual kind");
    m_directory = static_cast<int>(directory);
    int position = m_directory;
    for (int read = 0; read < count; ++read) {
        const QString problem = readEntry(position);
        if (!problem.isEmpty())
            return problem;
    }
    m_end = end;
    if (position > end)
        return damage();
    QVector<Member *> inOrder;
    for (Member &member : m_members)
        inOrder.append(&member);
    std::sort(inOrder.begin(), inOrder.end(),
              [](const Member *one, const Member *other) { return one->begin < other->begin; });
    for (int n = 0; n < inOrder.size(); ++n) {
        inOrder[n]->end = n + 1 < inOrder.size() ? inOrder[n + 1]->begin : m_directory;
        const QString problem = readHeader(*inOrder[n]);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString ZipArchive::readEntry(int &position)
{
    if (!hasMark(m_bytes, position, entryMark, entrySize))
        return damage();
    Member member;
    member.entry = position;
    const int fields = position + inDirectory;
    const int nameLength = number<quint16>(m_bytes, fields + NameLength);
    member.entrySize = entrySize + nameLength + number<quint16>(m_bytes, fields + ExtraLength) +
                       number<quint16>(m_bytes, position + entryCommentLength);
    const quint32 packed = number<quint32>(m_bytes, fields + Packed);
    const quint32 size = number<quint32>(m_bytes, fields + Size);
    const quint32 begin = number<quint32>(m_bytes, position + entryBegin);
    member.method = number<quint16>(m_bytes, fields + MethodField);
    const bool isKnown = member.method == Stored || member.method == Deflated;
    if (number<quint16>(m_bytes, fields + Flags) & Encrypted)
        return texts::tr("it is protected with a password");
    if (!isKnown || packed == zip64 || size == zip64 || size > INT_MAX)
        return texts::tr("its ZIP archive is of an unusual kind");
    if (packed > static_cast<quint32>(m_directory) || begin >= static_cast<quint32>(m_directory))
        return damage();
    member.name = QString::fromUtf8(m_bytes.mid(position + entrySize, nameLength));
    member.checksum = number<quint32>(m_bytes, fields + Checksum);
    member.packed = static_cast<int>(packed);
    member.size = static_cast<int>(size);
    member.begin = static_cast<int>(begin);
    if (has(member.name))
        return texts::tr("it is damaged: it has a part twice");
    m_index.insert(member.name, m_members.size());
    m_members.append(member);
    position += member.entrySize;
    return {};
}

QString ZipArchive::readHeader(Member &member) const
{
    if (!hasMark(m_bytes, member.begin, headerMark, headerSize))
        return damage();
    member.data = member.begin + headerSize + number<quint16>(m_bytes, member.begin + NameLength) +
                  number<quint16>(m_bytes, member.begin + ExtraLength);
    return member.data + member.packed <= member.end ? QString() : damage();
}

std::optional<QByteArray> ZipArchive::content(const QString &name, int limit) const
{
    const int index = m_index.value(name, -1);
    if (index < 0 || m_members[index].size > limit)
        return std::nullopt;
    const Member &member = m_members[index];
    const QByteArray packed = m_bytes.mid(member.data, member.packed);
    const std::optional<QByteArray> content =
        member.method == Stored ? packed : inflated(packed, member.size);
    return content && checksumOf(*content) == member.checksum ? content : std::nullopt;
}

void ZipArchive::appendMember(QByteArray &archive, const Member &member, const QByteArray *content,
                              QByteArray &entry) const
{
    set(entry, entryBegin, static_cast<quint32>(archive.size()));
    if (!content) {
        archive += m_bytes.mid(member.begin, member.end - member.begin);
        return;
    }
    const QByteArray packed = member.method == Stored ? *content : deflated(*content);
    QByteArray header = m_bytes.mid(member.begin, member.data - member.begin);
    const auto setBoth = [&](int field, auto value) {
        set(header, field, value);
        set(entry, field + inDirectory, value);
    };
    const int flags = number<quint16>(header, Flags) & ~SizesFollow;
    setBoth(Flags, static_cast<quint16>(flags));
    setBoth(Checksum, checksumOf(*content));
    setBoth(Packed, static_cast<quint32>(packed.size()));
    setBoth(Size, static_cast<quint32>(content->size()));
    archive += header + packed;
}

QByteArray ZipArchive::withContents(const QHash<QString, QByteArray> &contents) const
{
    QVector<int> inOrder;
    QVector<QByteArray> entries;
    for (const Member &member : m_members) {
        inOrder.append(entries.size());
        entries.append(m_bytes.mid(member.entry, member.entrySize));
    }
    std::sort(inOrder.begin(), inOrder.end(),
              [this](int one, int other) { return m_members[one].begin < m_members[other].begin; });
    QByteArray archive = m_bytes.left(inOrder.isEmpty() ? 0 : m_members[inOrder.first()].begin);
    for (const int index : inOrder) {
        const auto content = contents.find(m_members[index].name);
        appendMember(archive, m_members[index], content == contents.end() ? nullptr : &*content,
                     entries[index]);
    }
    const int directory = archive.size();
    for (const QByteArray &entry : entries)
        archive += entry;
    QByteArray end = m_bytes.mid(m_end);
    set(end, directorySizeInEnd, static_cast<quint32>(archive.size() - directory));
    set(end, directoryInEnd, static_cast<quint32>(directory));
    return archive + end;
}

} // namespace programs
