#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace doctor {

constexpr int maximumSize = 64 * 1024 * 1024;
constexpr int maximumDepth = 256;

/// Bytes of a content from begin up to, not including, end.
struct Span
{
    int begin = 0;
    int end = 0;

    int size() const { return end - begin; }
};

/// New text for the bytes of a span.
struct Edit
{
    Span span;
    QByteArray text;
};

QByteArray bytesIn(const QByteArray &content, Span span);
/// The length of the UTF-8 byte order mark at the start: 0 or 3.
int markSize(const QByteArray &content);
/// "\r\n" if the first line ends so, otherwise "\n".
QByteArray lineEndOf(const QByteArray &content);
/// Counts from 1; "\n", "\r\n" and "\r" end a line.
int lineAt(const QByteArray &content, int position);
/// The position after the line end at position, or position itself if none is there.
int afterLineEnd(const QByteArray &content, int position);
/// "Line 3: " and the text.
QString atLine(const QByteArray &content, int position, const QString &text);
bool isBlank(const QByteArray &bytes);
/// The character at position of valid or broken UTF-8, and the position after it; nothing if
/// broken.
std::optional<uint> nextCharacter(const QByteArray &content, int &position);
/// All characters, where QString::fromUtf8() ends at a zero and drops a byte order mark at the
/// start.
QString utf8Text(const QByteArray &bytes);
bool isUtf8(const QByteArray &bytes);
/// True if no half of a surrogate pair stands alone: otherwise it has no UTF-8.
bool hasUtf8(const QString &text);

} // namespace doctor
