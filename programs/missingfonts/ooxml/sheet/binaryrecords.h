#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace standin {

/// Cuts a binary workbook's part into its records, in fixed memory: only the beginning of a long
/// record is kept.
class BinaryRecords
{
public:
    /// Takes a record: its type and as much of its content as is kept.
    using Record = std::function<void(std::uint32_t type, std::string_view content)>;

    explicit BinaryRecords(Record record) : m_record(std::move(record)) {}

    void feed(const char *data, std::size_t size);

    /// The part has ended.
    /// @throws DocumentError when it ends within a record
    void finish() const;

private:
    bool takeHeader(unsigned char byte);

    enum class State {
        Type,
        Size,
        Content
    };

    Record m_record;
    std::string m_content;
    State m_state = State::Type;
    std::uint32_t m_type = 0;
    std::uint32_t m_size = 0;
    std::uint32_t m_taken = 0;
    unsigned m_headerBytes = 0;
};

} // namespace standin
