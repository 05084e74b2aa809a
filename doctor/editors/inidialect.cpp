#include "doctor/editors/inidialect.h"

#include "doctor/editors/inivalue.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr char rootName[] = "General";
constexpr char escapedRootName[] = "%General";

bool isSpace(char character)
{
    return character == ' ' || character == '\t';
}

/// Where the line's text ends: before its line end or a comment behind it. Nothing if the content
/// ends before quotes are closed or an escape is whole.
struct LineText
{
    std::optional<int> end;
    int equals = -1;
};

/// Behind the character at position that a backslash is before: a line end can be two.
int escapedEnd(const QByteArray &content, int position)
{
    const char character = position < content.size() ? content.at(position) : '\0';
    const char next = position + 1 < content.size() ? content.at(position + 1) : '\0';
    const bool isPair = (character == '\r' && next == '\n') || (character == '\n' && next == '\r');
    return position + (isPair ? 2 : 1);
}

LineText lineText(const QByteArray &content, int begin)
{
    LineText text;
    bool isQuoted = false;
    bool isContinued = false;
    int i = begin;
    for (; i < content.size(); ++i) {
        const char character = content.at(i);
        if (character == '\\') {
            i = escapedEnd(content, i + 1) - 1;
            isContinued =
                i + 1 >= content.size() && (content.endsWith('\n') || content.endsWith('\r'));
        } else if (character == '"') {
            isQuoted = !isQuoted;
        } else if (isQuoted) {
            continue;
        } else if (character == '=' && text.equals < 0) {
            text.equals = i;
        } else if (character == ';' || character == '\n' || character == '\r') {
            break;
        }
    }
    if (i <= content.size() && !isQuoted && !isContinued)
        text.end = i;
    return text;
}

/// QSettings takes a byte order mark for part of the name behind it.
bool isGarbled(const QByteArray &content, int position)
{
    return position > 0 && position == markSize(content);
}

int physicalEnd(const QByteArray &content, int position)
{
    while (position < content.size() && content.at(position) != '\n' &&
           content.at(position) != '\r')
        ++position;
    return position;
}

Span trimmed(const QByteArray &content, Span span)
{
    while (span.begin < span.end && isSpace(content.at(span.begin)))
        ++span.begin;
    while (span.end > span.begin && isSpace(content.at(span.end - 1)))
        --span.end;
    return span;
}

} // namespace

QString IniDialect::readLine(const QByteArray &content, int position, SectionLine &line) const
{
    int begin = position;
    while (begin < content.size() && isSpace(content.at(begin)))
        ++begin;
    LineText text;
    const bool isComment = begin < content.size() && content.at(begin) == ';';
    if (isComment)
        text.end = physicalEnd(content, begin);
    else
        text = lineText(content, begin);
    if (!text.end)
        return atLine(content, begin, texts::tr("a quoted or continued value has no end."));
    const int end = physicalEnd(content, *text.end);
    line.whole = {position, afterLineEnd(content, end)};
    line.comment = *text.end < end ? *text.end : line.whole.end;
    if (!isComment && begin < *text.end && content.at(begin) == '[') {
        const int close = content.indexOf(']', begin);
        if (close < 0 || close >= *text.end)
            return atLine(content, begin, texts::tr("the section's name has no end."));
        line.kind = SectionLine::Kind::Header;
        line.name = trimmed(content, {begin + 1, close});
    } else if (text.equals >= 0 && !isGarbled(content, position)) {
        line.kind = SectionLine::Kind::Entry;
        line.name = trimmed(content, {begin, text.equals});
        line.value = trimmed(content, {text.equals + 1, *text.end});
        line.spacedValue = {line.value.begin, *text.end};
    }
    return {};
}

bool IniDialect::isLineEnd(char character) const
{
    return character == '\n' || character == '\r';
}

bool IniDialect::isSection(const QByteArray &name, const QString &section) const
{
    const bool isRoot = name.isNull() || qstricmp(name.constData(), rootName) == 0;
    if (section.isEmpty() || section.compare(QLatin1String(rootName), Qt::CaseInsensitive) == 0)
        return isRoot;
    if (qstricmp(name.constData(), escapedRootName) == 0)
        return false;
    return !isRoot && decodedIniName(name) == section;
}

bool IniDialect::isKey(const QByteArray &name, const QString &key) const
{
    return decodedIniName(name) == key;
}

QString IniDialect::decoded(const QByteArray &value) const
{
    return decodedIniValue(value);
}

QString IniDialect::writeProblem(const QStringList &key, const QString &value) const
{
    if (key.last().isEmpty())
        return texts::tr("The key has no name.");
    if (!hasUtf8(value) || value.contains(QChar::Null) || key.join(QString()).contains(QChar::Null))
        return texts::tr("An INI file cannot hold this text: it has a zero or half a character.");
    return {};
}

QByteArray IniDialect::encodedSection(const QString &section) const
{
    return section.isEmpty() ? QByteArray(rootName) : encodedIniName(section);
}

QByteArray IniDialect::encodedKey(const QString &key) const
{
    return encodedIniName(key);
}

QByteArray IniDialect::encoded(const QString &value, const QByteArray &before) const
{
    return encodedIniValue(value, before);
}

} // namespace doctor
