#include "servercheck/unpacker.h"

#include <array>

#include <zlib.h>

namespace OfficeAssiant {

namespace {

/// zlib's window, told to find out whether a gzip or a zlib header follows.
constexpr int anyHeader = MAX_WBITS + 32;
/// Some servers send "deflate" without the header that belongs to it.
constexpr int noHeader = -MAX_WBITS;
constexpr int pieceSize = 64 * 1024;

} // namespace

struct Unpacker::Stream : z_stream
{
    bool isRaw = false;
    int state = Z_OK;
};

bool Unpacker::knows(const QByteArray &encoding)
{
    return encoding.compare("gzip", Qt::CaseInsensitive) == 0 ||
           encoding.compare("deflate", Qt::CaseInsensitive) == 0;
}

Unpacker::Unpacker() : m_stream(std::make_unique<Stream>())
{
    m_stream->state = ::inflateInit2(m_stream.get(), anyHeader);
}

Unpacker::~Unpacker()
{
    ::inflateEnd(m_stream.get());
}

bool Unpacker::unpack(const QByteArray &piece, QByteArray &text, int mostText)
{
    Stream &stream = *m_stream;
    QByteArray input = piece;
    std::array<char, pieceSize> output;
    stream.next_in = reinterpret_cast<Bytef *>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.avail_out = 0;
    while (stream.state == Z_OK && text.size() < mostText &&
           (stream.avail_in > 0 || stream.avail_out == 0)) {
        stream.next_out = reinterpret_cast<Bytef *>(output.data());
        stream.avail_out = pieceSize;
        stream.state = ::inflate(&stream, Z_NO_FLUSH);
        if (stream.state == Z_BUF_ERROR) // Nothing was left to do.
            stream.state = Z_OK;
        else if (stream.state == Z_DATA_ERROR && !stream.isRaw && stream.total_out == 0) {
            stream.isRaw = true;
            stream.state = ::inflateReset2(&stream, noHeader);
            stream.next_in = reinterpret_cast<Bytef *>(input.data());
            stream.avail_in = static_cast<uInt>(input.size());
            continue;
        }
        text.append(output.data(),
                    qMin(pieceSize - static_cast<int>(stream.avail_out), mostText - text.size()));
    }
    return stream.state == Z_OK || stream.state == Z_STREAM_END;
}

} // namespace OfficeAssiant
