#include "doctor/editors/inivalue.h"

#include "doctor/editors/content/content.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace doctor {

namespace {

constexpr char escapeLetters[] = "abfnrtv\"?'\\";
constexpr char escapedCharacters[] = "\a\b\f\n\r\t\v\"?'\\";
/// Those of them that need an escape.
constexpr char writtenLetters[] = "abfnrtv\"\\";
constexpr char writtenCharacters[] = "\a\b\f\n\r\t\v\"\\";

bool isHexDigit(char character)
{
    return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

bool isAscii(const QByteArray &bytes)
{
    return std::none_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
}

QString plainText(const QByteArray &bytes)
{
    return isUtf8(bytes) ? utf8Text(bytes) : QString::fromLatin1(bytes);
}

/// Reads a value from its first to its last byte.
class ValueReader
{
public:
    explicit ValueReader(const QByteArray &value) : m_value(value) {}

    QString text()
    {
        skipSpaces();
        while (m_position < m_value.size())
            readPart();
        if (!m_wasQuoted)
            chopSpaces();
        return m_text;
    }
    bool isList() const { return m_isList; }

private:
    void readPart()
    {
        const char character = m_value.at(m_position);
        if (character == '\\') {
            ++m_position;
            readEscape();
            m_protected = m_text.size();
        } else if (character == '"') {
            ++m_position;
            m_wasQuoted = true;
            m_isQuoted = !m_isQuoted;
            if (!m_isQuoted)
                skipSpaces();
        } else if (character == ',' && !m_isQuoted) {
            m_isList = true;
            m_position = m_value.size();
        } else {
            readPlain();
        }
    }

    void readPlain()
    {
        const int begin = m_position++;
        while (m_position < m_value.size() &&
               std::strchr("\\\",", m_value.at(m_position)) == nullptr)
            ++m_position;
        m_text += plainText(m_value.mid(begin, m_position - begin));
    }

    void readEscape()
    {
        if (m_position >= m_value.size())
            return;
        const char letter = m_value.at(m_position++);
        const char *known = std::strchr(escapeLetters, letter);
        if (known != nullptr)
            m_text += QLatin1Char(escapedCharacters[known - escapeLetters]);
        else if (letter == 'x')
            readNumber(16);
        else if (letter >= '0' && letter <= '7')
            readOctal();
        else if (letter == '\n' || letter == '\r')
            skipSecondLineEnd(letter);
    }

    void readOctal()
    {
        --m_position;
        readNumber(8);
    }

    /// As many digits as there are; 16 bits of them count.
    void readNumber(uint base)
    {
        const int begin = m_position;
        uint number = 0;
        while (m_position < m_value.size() && isDigit(m_value.at(m_position), base)) {
            const char digit = m_value.at(m_position++);
            number = number * base + static_cast<uint>(QByteArray(1, digit).toInt(nullptr, 16));
        }
        if (m_position > begin)
            m_text += QChar(static_cast<ushort>(number));
    }

    static bool isDigit(char character, uint base)
    {
        return base == 16 ? isHexDigit(character) : character >= '0' && character <= '7';
    }

    void skipSecondLineEnd(char first)
    {
        const char second = first == '\n' ? '\r' : '\n';
        if (m_position < m_value.size() && m_value.at(m_position) == second)
            ++m_position;
    }

    void skipSpaces()
    {
        while (m_position < m_value.size() &&
               (m_value.at(m_position) == ' ' || m_value.at(m_position) == '\t'))
            ++m_position;
    }

    void chopSpaces()
    {
        int size = m_text.size();
        while (size > m_protected && (m_text.at(size - 1) == QLatin1Char(' ') ||
                                      m_text.at(size - 1) == QLatin1Char('\t')))
            --size;
        m_text.truncate(size);
    }

    const QByteArray &m_value;
    QString m_text;
    int m_position = 0;
    /// What escapes wrote is not chopped.
    int m_protected = 0;
    bool m_isQuoted = false;
    bool m_wasQuoted = false;
    bool m_isList = false;
};

QByteArray hexEscape(ushort unit)
{
    return "\\x" + QByteArray::number(unit, 16);
}

bool hasOutsideAscii(const QByteArray &value)
{
    return !isAscii(value) && isUtf8(value);
}

/// True for a character that other readers than Qt's may want in UTF-8. Qt drops a byte order mark.
bool staysUtf8(QChar character)
{
    return character.unicode() > 0x7f && character != QChar(QChar::ByteOrderMark);
}

QByteArray escapedText(const QString &text, bool keepsUtf8)
{
    QByteArray result;
    bool isAfterHex = false;
    for (int i = 0; i < text.size(); ++i) {
        const ushort unit = text.at(i).unicode();
        const char letter = unit < 0x80 ? static_cast<char>(unit) : '\0';
        const char *known = std::strchr(writtenCharacters, letter);
        const bool isLetter = letter != '\0' && known != nullptr;
        const bool isUtf8Letter = keepsUtf8 && staysUtf8(text.at(i));
        const bool isHex = !isLetter && !isUtf8Letter &&
                           (unit < 0x20 || unit > 0x7e || (isAfterHex && isHexDigit(letter)));
        if (isLetter) {
            result.append('\\').append(writtenLetters[known - writtenCharacters]);
        } else if (isHex) {
            result += hexEscape(unit);
        } else {
            const int units = text.at(i).isHighSurrogate() ? 2 : 1;
            result += text.mid(i, units).toUtf8();
            i += units - 1;
        }
        isAfterHex = isHex;
    }
    return result;
}

} // namespace

QString decodedIniValue(const QByteArray &value)
{
    ValueReader reader(value);
    const QString text = reader.text();
    if (reader.isList())
        return plainText(value.trimmed());
    return text.startsWith(QLatin1String("@@")) ? text.mid(1) : text;
}

QByteArray encodedIniValue(const QString &text, const QByteArray &before)
{
    QByteArray result = escapedText(text, hasOutsideAscii(before));
    if (result.startsWith('@'))
        result.prepend('@');
    ValueReader reader(before);
    reader.text();
    const bool isPlain = std::none_of(result.begin(), result.end(),
                                      [](char c) { return std::strchr("\\\";=@", c) != nullptr; });
    const bool isEdged = text != text.trimmed();
    if (reader.isList() && isPlain && !isEdged && text.contains(QLatin1Char(',')))
        return result;
    const bool needsQuotes = isEdged || std::any_of(result.begin(), result.end(), [](char c) {
                                 return std::strchr(";,=", c) != nullptr;
                             });
    return needsQuotes ? '"' + result + '"' : result;
}

QString decodedIniName(const QByteArray &name)
{
    if (!name.contains('%') && !name.contains('\\'))
        return plainText(name);
    QByteArray plain = name;
    plain.replace('\\', '/');
    const QString text = plainText(plain);
    QString result;
    for (int i = 0; i < text.size();) {
        const bool isWide = i + 1 < text.size() && text.at(i + 1) == QLatin1Char('U');
        const QString digits = isWide ? text.mid(i + 2, 4) : text.mid(i + 1, 2);
        bool isNumber = text.at(i) == QLatin1Char('%') && digits.size() == (isWide ? 4 : 2);
        const int number = isNumber ? digits.toInt(&isNumber, 16) : 0;
        result += isNumber ? QChar(number) : text.at(i);
        i += isNumber ? 1 + digits.size() + (isWide ? 1 : 0) : 1;
    }
    return result;
}

QByteArray encodedIniName(const QString &name)
{
    QByteArray result;
    for (int i = 0; i < name.size(); ++i) {
        const ushort unit = name.at(i).unicode();
        const bool isEdgeSpace = unit == ' ' && (i == 0 || i == name.size() - 1);
        const bool isPlain = unit > 0x1f && unit < 0x7f && !isEdgeSpace &&
                             std::strchr("%=;:\\\"[]#/", static_cast<char>(unit)) == nullptr;
        // At the end it would be an escape.
        if (unit == '/' && i + 1 < name.size())
            result += '\\';
        else if (isPlain)
            result += static_cast<char>(unit);
        else if (unit < 0x100)
            result += '%' + QByteArray::number(unit, 16).rightJustified(2, '0').toUpper();
        else
            result += "%U" + QByteArray::number(unit, 16).rightJustified(4, '0').toUpper();
    }
    return result;
}

} // namespace doctor
