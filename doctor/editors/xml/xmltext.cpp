#include "doctor/editors/xml/xmlreader.h"

#include <algorithm>

namespace doctor {

namespace {

struct Entity
{
    char name[5];
    char character;
};

constexpr Entity entities[] = {
    {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};

/// The name between "&" and ";" as a character.
std::optional<uint> referredTo(const QByteArray &name)
{
    for (const Entity &entity : entities) {
        if (name == entity.name)
            return static_cast<uint>(entity.character);
    }
    const bool isHex = name.startsWith("#x");
    const QByteArray digits = name.mid(isHex ? 2 : 1);
    const bool isNumber =
        name.startsWith('#') && !digits.isEmpty() &&
        std::all_of(digits.begin(), digits.end(), [&](char c) {
            return isHex ? std::isxdigit(static_cast<unsigned char>(c)) != 0 : c >= '0' && c <= '9';
        });
    bool isSmall = false;
    const uint character = digits.toUInt(&isSmall, isHex ? 16 : 10);
    if (!isNumber || !isSmall || !isXmlCharacter(character))
        return std::nullopt;
    return character;
}

QString textOf(uint character)
{
    return QString::fromUcs4(&character, 1);
}

std::optional<QString> decoded(const QByteArray &text, bool isAttribute)
{
    constexpr int longestReference = 32;
    QString result;
    for (int i = 0; i < text.size();) {
        const int found = text.indexOf('&', i);
        const int ampersand = found < 0 ? text.size() : found;
        QString plain = plainXml(text.mid(i, ampersand - i));
        if (isAttribute)
            plain.replace(QLatin1Char('\n'), QLatin1Char(' '))
                .replace(QLatin1Char('\t'), QLatin1Char(' '));
        result += plain;
        if (found < 0)
            break;
        const int length = text.mid(ampersand + 1, longestReference).indexOf(';');
        const auto character = referredTo(text.mid(ampersand + 1, std::max(length, 0)));
        if (length < 0 || !character)
            return std::nullopt;
        result += textOf(*character);
        i = ampersand + length + 2;
    }
    return result;
}

QByteArray escaped(const QString &text, const QByteArray &characters)
{
    QByteArray result;
    const QByteArray plain = text.toUtf8();
    for (const char character : plain) {
        const bool isPlain = !characters.contains(character);
        const auto *entity =
            std::find_if(std::begin(entities), std::end(entities),
                         [&](const Entity &e) { return e.character == character; });
        if (isPlain)
            result += character;
        else if (entity != std::end(entities))
            result.append('&').append(entity->name).append(';');
        else
            result += "&#" + QByteArray::number(static_cast<int>(character)) + ';';
    }
    return result;
}

struct Interval
{
    uint first;
    uint last;
};

template<std::size_t size>
bool isIn(const Interval (&intervals)[size], uint character)
{
    return std::any_of(std::begin(intervals), std::end(intervals), [&](const Interval &interval) {
        return character >= interval.first && character <= interval.last;
    });
}

bool isNameCharacter(uint character, bool isFirst)
{
    constexpr Interval anywhere[] = {
        {'a', 'z'},       {'A', 'Z'},       {'_', '_'},       {0xc0, 0xd6},     {0xd8, 0xf6},
        {0xf8, 0x2ff},    {0x370, 0x37d},   {0x37f, 0x1fff},  {0x200c, 0x200d}, {0x2070, 0x218f},
        {0x2c00, 0x2fef}, {0x3001, 0xd7ff}, {0xf900, 0xfdcf}, {0xfdf0, 0xfffd}, {0x10000, 0xeffff}};
    constexpr Interval notFirst[] = {
        {'0', '9'}, {'-', '.'}, {0xb7, 0xb7}, {0x300, 0x36f}, {0x203f, 0x2040}};
    return isIn(anywhere, character) || (!isFirst && isIn(notFirst, character));
}

} // namespace

QString plainXml(const QByteArray &bytes)
{
    QString text = utf8Text(bytes);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

std::optional<QString> decodedXml(const QByteArray &text)
{
    return decoded(text, false);
}

QString decodedXmlAttribute(const QByteArray &value)
{
    return decoded(value, true).value_or(QString());
}

QByteArray encodedXml(const QString &text)
{
    return escaped(text, QByteArrayLiteral("&<>\r"));
}

QByteArray encodedXmlAttribute(const QString &value, char quote)
{
    return escaped(value, QByteArrayLiteral("&<>\t\n\r") + quote);
}

int xmlNameEnd(const QByteArray &content, int position)
{
    bool isFirst = true;
    bool hasPrefix = false;
    int end = position;
    for (int next = position; next < content.size();) {
        const uint character = nextCharacter(content, next).value_or(0);
        const bool isColon = character == ':' && !isFirst && !hasPrefix;
        if (!isColon && !isNameCharacter(character, isFirst))
            break;
        hasPrefix = hasPrefix || isColon;
        isFirst = isColon;
        if (!isColon)
            end = next;
    }
    return end;
}

bool isXmlName(const QString &name)
{
    const QByteArray bytes = name.toUtf8();
    return !bytes.isEmpty() && hasUtf8(name) && xmlNameEnd(bytes, 0) == bytes.size();
}

bool isXmlCharacter(uint character)
{
    constexpr Interval all[] = {
        {'\t', '\n'}, {'\r', '\r'}, {' ', 0xd7ff}, {0xe000, 0xfffd}, {0x10000, 0x10ffff}};
    return isIn(all, character);
}

bool isXmlText(const QString &text)
{
    const QVector<uint> characters = text.toUcs4();
    return hasUtf8(text) && std::all_of(characters.begin(), characters.end(), isXmlCharacter);
}

} // namespace doctor
