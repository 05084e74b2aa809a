#pragma once

#include <QByteArray>

#include <memory>

namespace OfficeAssiant {

/// Unpacks a compressed answer piece by piece, and no more of it than is asked for.
class Unpacker
{
public:
    /// Whether answers with that Content-Encoding are unpacked.
    static bool knows(const QByteArray &encoding);

    Unpacker();
    ~Unpacker();
    Q_DISABLE_COPY_MOVE(Unpacker)

    /// Appends to @p text what the next @p piece unpacks to, up to a length of @p mostText. False
    /// once the data is corrupt.
    bool unpack(const QByteArray &piece, QByteArray &text, int mostText);

private:
    struct Stream;

    std::unique_ptr<Stream> m_stream;
};

} // namespace OfficeAssiant
