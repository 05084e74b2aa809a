#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace fuzzing {

/// What must hold for any input; the fuzzer keeps the input for which it does not.
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// The input as bytes of their own, so that reading behind their end is seen.
inline QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size));
}

/// The input as text, malformed UTF-8 included.
inline QString textOf(const std::uint8_t *data, std::size_t size)
{
    return QString::fromUtf8(bytesOf(data, size));
}

} // namespace fuzzing
