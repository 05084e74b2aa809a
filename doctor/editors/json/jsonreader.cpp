#include "doctor/editors/json/jsonreader.h"

#include <cstring>

#include "texts/texts.h"

namespace doctor {

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isHexDigit(char character)
{
    return isDigit(character) || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

} // namespace

JsonReader::JsonReader(const QByteArray &content)
    : m_content(content), m_position(markSize(content))
{
}

JsonToken JsonReader::next()
{
    skipSpace();
    switch (m_state) {
    case State::AfterValue:
        return readAfterValue();
    case State::First:
        if (character() == (isInObject() ? '}' : ']'))
            return close();
        return isInObject() ? readName() : readValue();
    case State::Value:
        break;
    }
    return readValue();
}

/// A null character, which JSON has nowhere, stands for the end.
char JsonReader::character() const
{
    return m_position < m_content.size() ? m_content.at(m_position) : '\0';
}

void JsonReader::skipSpace()
{
    while (m_position < m_content.size() && std::strchr(" \t\n\r", character()) != nullptr &&
           character() != '\0')
        ++m_position;
}

JsonToken JsonReader::broken(const QString &problem)
{
    m_problem = atLine(m_content, m_position, problem);
    m_position = m_content.size();
    return {JsonToken::Kind::Broken, {m_position, m_position}};
}

JsonToken JsonReader::readAfterValue()
{
    if (m_open.isEmpty()) {
        if (m_position < m_content.size())
            return broken(texts::tr("something stands behind the value."));
        return {JsonToken::Kind::Finished, {m_position, m_position}};
    }
    if (character() == (isInObject() ? '}' : ']'))
        return close();
    if (character() != ',')
        return broken(texts::tr("a comma or a closing bracket is missing."));
    ++m_position;
    skipSpace();
    return isInObject() ? readName() : readValue();
}

JsonToken JsonReader::readName()
{
    const int begin = m_position;
    if (character() != '"' || !readString())
        return broken(texts::tr("a name in quotes is missing."));
    const Span span{begin, m_position};
    skipSpace();
    if (character() != ':')
        return broken(texts::tr("a colon is missing."));
    ++m_position;
    m_state = State::Value;
    return {JsonToken::Kind::Name, span};
}

JsonToken JsonReader::readValue()
{
    const int begin = m_position;
    if (character() == '{' || character() == '[')
        return open(character());
    if (character() != '"')
        return readBare();
    if (!readString())
        return broken(texts::tr("a string is broken."));
    m_state = State::AfterValue;
    return {JsonToken::Kind::String, {begin, m_position}};
}

JsonToken JsonReader::readBare()
{
    const int begin = m_position;
    bool isBare = false;
    for (const char *word : {"true", "false", "null"}) {
        const int length = static_cast<int>(std::strlen(word));
        isBare = m_content.mid(begin, length) == word;
        if (isBare) {
            m_position += length;
            break;
        }
    }
    if (!isBare && !readNumber())
        return broken(texts::tr("a value is missing."));
    m_state = State::AfterValue;
    return {JsonToken::Kind::Bare, {begin, m_position}};
}

JsonToken JsonReader::open(char bracket)
{
    if (m_open.size() == maximumDepth)
        return broken(texts::tr("the content is nested deeper than 256 levels."));
    m_open.append(bracket);
    m_state = State::First;
    ++m_position;
    return {JsonToken::Kind::Begin, {m_position - 1, m_position}};
}

JsonToken JsonReader::close()
{
    m_open.removeLast();
    m_state = State::AfterValue;
    ++m_position;
    return {JsonToken::Kind::End, {m_position - 1, m_position}};
}

bool JsonReader::readString()
{
    ++m_position;
    while (character() != '"') {
        if (static_cast<unsigned char>(character()) < 0x20)
            return false;
        if (character() == '\\') {
            if (!readEscape())
                return false;
        } else if (!nextCharacter(m_content, m_position)) {
            return false;
        }
    }
    ++m_position;
    return true;
}

bool JsonReader::readEscape()
{
    ++m_position;
    const char letter = character();
    if (letter == '\0' || std::strchr("\"\\/bfnrtu", letter) == nullptr)
        return false;
    ++m_position;
    for (int i = 0; letter == 'u' && i < 4; ++i) {
        if (!isHexDigit(character()))
            return false;
        ++m_position;
    }
    return true;
}

bool JsonReader::skipDigits()
{
    const int begin = m_position;
    while (isDigit(character()))
        ++m_position;
    return m_position > begin;
}

bool JsonReader::readNumber()
{
    if (character() == '-')
        ++m_position;
    if (character() == '0')
        ++m_position;
    else if (!skipDigits())
        return false;
    if (character() == '.') {
        ++m_position;
        if (!skipDigits())
            return false;
    }
    if (character() == 'e' || character() == 'E') {
        ++m_position;
        if (character() == '+' || character() == '-')
            ++m_position;
        return skipDigits();
    }
    return true;
}

QString decodedJson(const QByteArray &string)
{
    constexpr char letters[] = "bfnrt";
    constexpr char characters[] = "\b\f\n\r\t";
    QString result;
    int plain = 1;
    for (int i = 1; i < string.size() - 1; ++i) {
        if (string.at(i) != '\\')
            continue;
        result += utf8Text(string.mid(plain, i - plain));
        const char letter = string.at(++i);
        const char *known = std::strchr(letters, letter);
        if (letter == 'u') {
            result += QChar(string.mid(i + 1, 4).toUShort(nullptr, 16));
            i += 4;
        } else {
            result += QLatin1Char(known != nullptr ? characters[known - letters] : letter);
        }
        plain = i + 1;
    }
    return result + utf8Text(string.mid(plain).chopped(1));
}

QByteArray encodedJson(const QString &text)
{
    constexpr char letters[] = "bfnrt\"\\";
    constexpr char characters[] = "\b\f\n\r\t\"\\";
    const QByteArray plain = text.toUtf8();
    QByteArray result(1, '"');
    for (const char character : plain) {
        const char *known = character != '\0' ? std::strchr(characters, character) : nullptr;
        if (known != nullptr)
            result.append('\\').append(letters[known - characters]);
        else if (static_cast<unsigned char>(character) < 0x20)
            result += "\\u00" + QByteArray(1, character).toHex();
        else
            result += character;
    }
    // Qt drops one at the start of a string.
    result.replace("\xef\xbb\xbf", "\\ufeff");
    return result + '"';
}

bool isBareJson(const QByteArray &text)
{
    JsonReader reader(text);
    const JsonToken token = reader.next();
    return token.kind == JsonToken::Kind::Bare && token.span.size() == text.size();
}

} // namespace doctor
