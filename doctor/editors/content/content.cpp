#include "doctor/editors/content/content.h"

#include <algorithm>
#include <string_view>

#include "texts/texts.h"

namespace doctor {

namespace {

constexpr std::string_view mark = "\xef\xbb\xbf";

bool isContinuation(const QByteArray &content, int position)
{
    return position < content.size() && (content.at(position) & 0xc0) == 0x80;
}

bool isSurrogate(uint character)
{
    return character >= 0xd800 && character <= 0xdfff;
}

} // namespace

QByteArray bytesIn(const QByteArray &content, Span span)
{
    return content.mid(span.begin, span.size());
}

int markSize(const QByteArray &content)
{
    return content.startsWith(mark.data()) ? static_cast<int>(mark.size()) : 0;
}

QByteArray lineEndOf(const QByteArray &content)
{
    const int end = content.indexOf('\n');
    const bool isPair = end > 0 && content.at(end - 1) == '\r';
    return isPair ? QByteArrayLiteral("\r\n") : QByteArrayLiteral("\n");
}

int lineAt(const QByteArray &content, int position)
{
    int line = 1;
    for (int i = 0; i < position;) {
        const int end = afterLineEnd(content, i);
        if (end > position)
            break;
        line += end != i;
        i = std::max(end, i + 1);
    }
    return line;
}

int afterLineEnd(const QByteArray &content, int position)
{
    if (position >= content.size())
        return position;
    const char character = content.at(position);
    if (character == '\n')
        return position + 1;
    if (character != '\r')
        return position;
    const bool isPair = position + 1 < content.size() && content.at(position + 1) == '\n';
    return position + (isPair ? 2 : 1);
}

QString atLine(const QByteArray &content, int position, const QString &text)
{
    return texts::tr("Line %1: %2").arg(lineAt(content, position)).arg(text);
}

bool isBlank(const QByteArray &bytes)
{
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
}

std::optional<uint> nextCharacter(const QByteArray &content, int &position)
{
    const auto first = static_cast<unsigned char>(content.at(position++));
    if (first < 0x80)
        return first;
    int more = 0;
    if (first >= 0xc2 && first <= 0xdf)
        more = 1;
    else if (first >= 0xe0 && first <= 0xef)
        more = 2;
    else if (first >= 0xf0 && first <= 0xf4)
        more = 3;
    if (more == 0)
        return std::nullopt;
    uint character = first & (0x3fU >> more);
    for (int i = 0; i < more; ++i) {
        if (!isContinuation(content, position))
            return std::nullopt;
        character = character << 6 | (static_cast<unsigned char>(content.at(position++)) & 0x3fU);
    }
    constexpr uint smallest[] = {0, 0x80, 0x800, 0x10000};
    if (character < smallest[more] || character > 0x10ffff || isSurrogate(character))
        return std::nullopt;
    return character;
}

QString utf8Text(const QByteArray &bytes)
{
    QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    if (markSize(bytes) > 0)
        text.prepend(QChar(QChar::ByteOrderMark));
    return text;
}

bool isUtf8(const QByteArray &bytes)
{
    for (int i = 0; i < bytes.size();) {
        if (!nextCharacter(bytes, i))
            return false;
    }
    return true;
}

bool hasUtf8(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSurrogate())
            continue;
        const bool isPair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (!isPair)
            return false;
        ++i;
    }
    return true;
}

} // namespace doctor
