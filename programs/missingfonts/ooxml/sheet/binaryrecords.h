#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "programs/missingfonts/common/documenterror.h"

namespace programs {

/// Cuts a part of a binary workbook into its records, in fixed memory: only the beginning of a long
/// record is kept.
class BinaryRecords
{
public:
    /// Takes a record: its type and as much of its content as is kept.
    using Record = std::function<void(std::uint32_t type, std::string_view content)>;

    explicit BinaryRecords(Record record) : m_record(std::move(record)) {}

    void feed(const char *data, std::size_t size)
    {
        while (size > 0) {
            if (m_state != State::Content) {
                takeHeader(static_cast<unsigned char>(*data++));
                --size;
                if (m_state != State::Content)
                    continue;
            }
            const std::size_t piece = std::min<std::size_t>(size, m_size - m_taken);
            if (m_content.size() < keptBytes)
                m_content.append(data, std::min(piece, keptBytes - m_content.size()));
            m_taken += static_cast<std::uint32_t>(piece);
            data += piece;
            size -= piece;
            if (m_taken == m_size)
                endRecord();
        }
    }

    /// The part has ended.
    /// @throws DocumentError when it ends within a record
    void finish() const
    {
        if (m_state != State::Type || m_headerBytes != 0)
            throw DocumentError("a part of the document ends too early");
    }

private:
    static constexpr std::size_t keptBytes = std::size_t(256) << 10;

    enum class State {
        Type,
        Size,
        Content
    };

    /// Types take one or two bytes, sizes up to four; the top bit says that one more follows.
    void takeHeader(unsigned char byte)
    {
        const bool isLast = (byte & 0x80U) == 0;
        if (m_state == State::Type) {
            m_type |= static_cast<std::uint32_t>(byte) << (8 * m_headerBytes++);
            if (isLast || m_headerBytes == 2) {
                m_state = State::Size;
                m_headerBytes = 0;
            }
            return;
        }
        m_size |= (byte & 0x7FU) << (7 * m_headerBytes++);
        if (isLast || m_headerBytes == 4)
            m_state = State::Content;
    }

    void endRecord()
    {
        m_record(m_type, m_content);
        m_content.clear();
        m_state = State::Type;
        m_type = m_size = m_taken = 0;
        m_headerBytes = 0;
    }

    Record m_record;
    std::string m_content;
    State m_state = State::Type;
    std::uint32_t m_type = 0;
    std::uint32_t m_size = 0;
    std::uint32_t m_taken = 0;
    unsigned m_headerBytes = 0;
};

} // namespace programs
