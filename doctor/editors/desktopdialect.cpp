#include "doctor/editors/desktopdialect.h"

#include <algorithm>
#include <cstring>

#include "texts/texts.h"

namespace doctor {

namespace {

bool isSpace(char character)
{
    return character != '\0' && std::strchr(" \t\r\f", character) != nullptr;
}

bool isControl(QChar character)
{
    return character.unicode() < 0x20 || character.unicode() == 0x7f;
}

bool isGroupName(const QByteArray &name)
{
    return !name.isEmpty() && std::none_of(name.begin(), name.end(), [](char c) {
        return c == '[' || c == ']' || static_cast<uchar>(c) < 0x20 || c == 0x7f;
    });
}

/// The letters between the brackets of "Name[de_DE@euro]".
bool isLocale(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        return c.isLetterOrNumber() || QStringLiteral("-_.@").contains(c);
    });
}

bool isKeyName(const QByteArray &name)
{
    const int bracket = name.indexOf('[');
    const QByteArray plain = bracket < 0 ? name : name.left(bracket);
    if (plain.isEmpty() || plain.startsWith(' ') || plain.endsWith(' ') || plain.contains(']'))
        return false;
    const QByteArray locale = name.mid(bracket + 1);
    return bracket < 0 || (locale.endsWith(']') && isLocale(utf8Text(locale.chopped(1))));
}

/// The line without indentation and line end. A return without a line feed is part of the line.
Span lineText(const QByteArray &content, int position)
{
    const int feed = content.indexOf('\n', position);
    int end = feed < 0 ? content.size() : feed;
    if (feed > position && content.at(feed - 1) == '\r')
        --end;
    while (position < end && isSpace(content.at(position)))
        ++position;
    return {position, end};
}

/// "[name]" and spaces behind it.
std::optional<Span> headerName(const QByteArray &content, Span text)
{
    while (content.at(text.end - 1) == ' ' || content.at(text.end - 1) == '\t')
        --text.end;
    const int close = content.indexOf(']', text.begin);
    if (close != text.end - 1)
        return std::nullopt;
    return Span{text.begin + 1, close};
}

QByteArray escaped(QChar character, bool isEdge)
{
    switch (character.unicode()) {
    case ' ':
        return isEdge ? QByteArrayLiteral("\\s") : QByteArrayLiteral(" ");
    case '\t':
        return QByteArrayLiteral("\\t");
    case '\n':
        return QByteArrayLiteral("\\n");
    case '\r':
        return QByteArrayLiteral("\\r");
    default:
        return QByteArrayLiteral("\\\\");
    }
}

} // namespace

QString DesktopDialect::readLine(const QByteArray &content, int position, SectionLine &line) const
{
    const Span text = lineText(content, position);
    const int feed = content.indexOf('\n', text.end);
    line.whole = {position, feed < 0 ? int(content.size()) : feed + 1};
    line.comment = line.whole.end;
    if (text.size() == 0 || content.at(text.begin) == '#')
        return {};
    if (content.at(text.begin) == '[') {
        if (const auto name = headerName(content, text)) {
            line.kind = SectionLine::Kind::Header;
            line.name = *name;
            return isGroupName(bytesIn(content, line.name))
                       ? QString()
                       : atLine(content, position, texts::tr("this is not the name of a group."));
        }
    }
    const int equals = content.indexOf('=', text.begin);
    if (equals <= text.begin || equals >= text.end)
        return atLine(content, position,
                      texts::tr("this is neither a comment nor a group nor a key."));
    line.kind = SectionLine::Kind::Entry;
    line.name = {text.begin, equals};
    while (line.name.size() > 0 && isSpace(content.at(line.name.end - 1)))
        --line.name.end;
    line.value = {equals + 1, text.end};
    while (line.value.size() > 0 && isSpace(content.at(line.value.begin)))
        ++line.value.begin;
    line.spacedValue = line.value;
    if (!isKeyName(bytesIn(content, line.name)))
        return atLine(content, position, texts::tr("this is not the name of a key."));
    return {};
}

bool DesktopDialect::isLineEnd(char character) const
{
    return character == '\n';
}

bool DesktopDialect::isSection(const QByteArray &name, const QString &section) const
{
    return !name.isNull() && utf8Text(name) == section;
}

bool DesktopDialect::isKey(const QByteArray &name, const QString &key) const
{
    return utf8Text(name) == key;
}

QString DesktopDialect::decoded(const QByteArray &value) const
{
    constexpr char letters[] = "sntr\\";
    constexpr char characters[] = " \n\t\r\\";
    QByteArray result;
    for (int i = 0; i < value.size(); ++i) {
        const bool isEscape = value.at(i) == '\\';
        if (isEscape && i + 1 == value.size())
            break;
        const char *known = isEscape ? std::strchr(letters, value.at(i + 1)) : nullptr;
        result += known != nullptr ? characters[known - letters] : value.at(i);
        i += known != nullptr ? 1 : 0;
    }
    return utf8Text(result);
}

QString DesktopDialect::writeProblem(const QStringList &key, const QString &value) const
{
    const QString &group = key.first();
    const QString &name = key.last();
    if (!isGroupName(group.toUtf8()))
        return texts::tr("“%1” is not the name of a group.").arg(group);
    const bool isEntry = !name.startsWith(QLatin1Char('#')) && !name.contains(QLatin1Char('=')) &&
                         std::none_of(name.begin(), name.end(), isControl);
    if (!isEntry || !isKeyName(name.toUtf8()))
        return texts::tr("“%1” is not the name of a key.").arg(name);
    const bool isText = std::none_of(value.begin(), value.end(), [](QChar c) {
        return isControl(c) && !QStringLiteral("\t\n\r").contains(c);
    });
    if (!isText || !hasUtf8(value))
        return texts::tr("A desktop entry cannot hold this text: it has control characters.");
    return {};
}

QByteArray DesktopDialect::encodedSection(const QString &section) const
{
    return section.toUtf8();
}

QByteArray DesktopDialect::encodedKey(const QString &key) const
{
    return key.toUtf8();
}

QByteArray DesktopDialect::encoded(const QString &value, const QByteArray & /*before*/) const
{
    QByteArray result;
    int plain = 0;
    for (int i = 0; i < value.size(); ++i) {
        if (!QStringLiteral(" \t\n\r\\").contains(value.at(i)))
            continue;
        result += value.mid(plain, i - plain).toUtf8();
        result += escaped(value.at(i), i == 0 || i == value.size() - 1);
        plain = i + 1;
    }
    return result + value.mid(plain).toUtf8();
}

} // namespace doctor
