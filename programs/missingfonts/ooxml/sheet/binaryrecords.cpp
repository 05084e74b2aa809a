#include "programs/missingfonts/ooxml/sheet/binaryrecords.h"

#include <algorithm>

#include "programs/missingfonts/common/documenterror.h"

namespace standin {

namespace {

constexpr std::size_t keptBytes = std::size_t(256) << 10;

} // namespace

/// Types take one or two bytes, sizes up to four; the top bit says that one more follows.
/// True when the header is complete.
bool BinaryRecords::takeHeader(unsigned char byte)
{
    const bool isLast = (byte & 0x80U) == 0;
    if (m_state == State::Type) {
        m_type |= static_cast<std::uint32_t>(byte) << (8 * m_headerBytes++);
        if (isLast || m_headerBytes == 2) {
            m_state = State::Size;
            m_headerBytes = 0;
        }
        return false;
    }
    m_size |= (byte & 0x7FU) << (7 * m_headerBytes++);
    return isLast || m_headerBytes == 4;
}

void BinaryRecords::feed(const char *data, std::size_t size)
{
    while (size > 0) {
        if (m_state != State::Content) {
            const bool complete = takeHeader(static_cast<unsigned char>(*data++));
            --size;
            if (!complete)
                continue;
            m_state = State::Content;
        }
        const std::size_t piece = std::min<std::size_t>(size, m_size - m_taken);
        if (m_content.size() < keptBytes)
            m_content.append(data, std::min(piece, keptBytes - m_content.size()));
        m_taken += static_cast<std::uint32_t>(piece);
        data += piece;
        size -= piece;
        if (m_taken < m_size)
            continue;
        m_record(m_type, m_content);
        m_content.clear();
        m_state = State::Type;
        m_type = m_size = m_taken = 0;
        m_headerBytes = 0;
    }
}

void BinaryRecords::finish() const
{
    if (m_state != State::Type || m_headerBytes != 0)
        throw DocumentError("a part of the document ends too early");
}

} // namespace standin
