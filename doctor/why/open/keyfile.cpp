#include "doctor/why/open/keyfile.h"

#include <algorithm>

namespace doctor {

namespace {

bool isSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r' && character != '\v');
}

QByteArray withoutSpaceBefore(const QByteArray &text)
{
    const auto *start = std::find_if_not(text.begin(), text.end(), &isSpace);
    return text.mid(static_cast<int>(start - text.begin()));
}

QByteArray withoutSpaceBehind(QByteArray text)
{
    while (!text.isEmpty() && isSpace(text.back()))
        text.chop(1);
    return text;
}

bool isInLocale(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
           (byte >= 'A' && byte <= 'Z') || byte == '-' || byte == '_' || byte == '.' || byte == '@';
}

/// "name" or "name[locale]".
bool isKeyName(const QByteArray &name)
{
    const auto *locale = std::find_if(name.begin(), name.end(),
                                      [](char each) { return each == '[' || each == ']'; });
    if (locale == name.begin() || name.front() == ' ' || *(locale - 1) == ' ')
        return false;
    return locale == name.end() || (*locale == '[' && name.endsWith(']') &&
                                    std::all_of(locale + 1, name.end() - 1, &isInLocale));
}

/// The name of the group that a line begins; nothing if it begins none.
std::optional<QByteArray> groupOf(const QByteArray &line)
{
    const int end = line.indexOf(']');
    if (!line.startsWith('[') || end < 0)
        return std::nullopt;
    const bool isWhole = std::all_of(line.begin() + end + 1, line.end(),
                                     [](char each) { return each == ' ' || each == '\t'; });
    return isWhole ? std::optional(line.mid(1, end - 1)) : std::nullopt;
}

bool isGroupName(const QByteArray &name)
{
    return !name.isEmpty() && std::none_of(name.begin(), name.end(), [](char each) {
        const auto byte = static_cast<unsigned char>(each);
        return each == '[' || byte < ' ' || byte == 0x7f;
    });
}

/// Adds what one line says. False if GLib stops here.
bool addLine(const QByteArray &line, int number, QByteArray &group, KeyFile &file)
{
    if (line.isEmpty() || line.startsWith('#'))
        return true;
    if (const std::optional<QByteArray> name = groupOf(line)) {
        if (!isGroupName(*name))
            return false;
        group = *name;
        if (file.firstGroup.isEmpty())
            file.firstGroup = group;
        return true;
    }
    const int equals = line.indexOf('=');
    const QByteArray key = withoutSpaceBehind(line.left(std::max(equals, 0)));
    if (equals <= 0 || group.isEmpty() || !isKeyName(key))
        return false;
    if (!key.endsWith(']'))
        file.lines.append({group, key, withoutSpaceBefore(line.mid(equals + 1)), number});
    return true;
}

/// What an escape stands for; nothing for an unknown one.
std::optional<char> unescaped(char letter, bool isList)
{
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    case '\\':
        return '\\';
    case ';':
        return isList ? std::optional(';') : std::nullopt;
    default:
        return std::nullopt;
    }
}

struct Parts
{
    QVector<QByteArray> parts;
    bool hasBadEscape = false;
};

Parts split(const QByteArray &value, bool isList)
{
    Parts found;
    QByteArray part;
    for (int index = 0; index < value.size(); ++index) {
        const char each = value.at(index);
        if (isList && each == ';') {
            found.parts.append(part);
            part.clear();
        } else if (each != '\\') {
            part.append(each);
        } else if (++index < value.size()) {
            const std::optional<char> meant = unescaped(value.at(index), isList);
            found.hasBadEscape = found.hasBadEscape || !meant;
            part += meant ? QByteArray(1, *meant) : value.mid(index - 1, 2);
        } else {
            found.hasBadEscape = true;
        }
    }
    if (!isList || !part.isEmpty())
        found.parts.append(part);
    return found;
}

} // namespace

KeyFile parseKeyFile(const QByteArray &content)
{
    KeyFile file;
    QByteArray group;
    int number = 0;
    for (int start = 0; start < content.size();) {
        const int feed = content.indexOf('\n', start);
        const int end = feed < 0 ? content.size() : feed;
        QByteArray line = content.mid(start, end - start);
        if (feed >= 0 && line.endsWith('\r'))
            line.chop(1);
        // GLib reads lines as C strings.
        line.truncate(static_cast<int>(qstrnlen(line.constData(), unsigned(line.size()))));
        ++number;
        if (!addLine(withoutSpaceBefore(line), number, group, file)) {
            file.lines.clear();
            file.brokenLine = number;
            break;
        }
        start = end + 1;
    }
    return file;
}

std::optional<QString> KeyFile::text(const char *group, const char *key) const
{
    const auto isIt = [&](const KeyFileLine &line) {
        return line.group == group && line.key == key;
    };
    const auto last = std::find_if(lines.rbegin(), lines.rend(), isIt);
    return last == lines.rend() ? std::nullopt : textValue(last->value);
}

std::optional<QString> decoded(const QByteArray &bytes)
{
    constexpr char byteOrderMark[] = "\xef\xbb\xbf";
    const QString text = QString::fromUtf8(bytes);
    const QByteArray again = text.toUtf8();
    // What is no text became another character, and a mark at the beginning nothing.
    if (again != bytes && (!bytes.startsWith(byteOrderMark) || byteOrderMark + again != bytes))
        return std::nullopt;
    return text;
}

std::optional<QString> textValue(const QByteArray &value)
{
    return decoded(value) ? decoded(split(value, false).parts.constFirst()) : std::nullopt;
}

std::optional<QStringList> listValue(const QByteArray &value)
{
    const Parts found = split(value, true);
    if (found.hasBadEscape || !decoded(value))
        return std::nullopt;
    QStringList texts;
    for (const QByteArray &part : found.parts)
        texts.append(decoded(part).value_or(QString()));
    return texts;
}

} // namespace doctor
