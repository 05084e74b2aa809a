#include "programs/missingfonts/rtf/rtfscanner.h"

#include <algorithm>
#include <charconv>

#include "programs/missingfonts/common/bytes.h"

namespace programs {

namespace {

/// The longest word and number that readers have to know.
constexpr std::size_t wordBytes = 32;
constexpr std::size_t numberBytes = 11;

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

void RtfScanner::feed(std::string_view block)
{
    while (!block.empty()) {
        if (m_binary > 0) {
            const auto skipped =
                std::min<std::int64_t>(m_binary, static_cast<std::int64_t>(block.size()));
            m_binary -= skipped;
            block.remove_prefix(static_cast<std::size_t>(skipped));
            continue;
        }
        take(block.front());
        block.remove_prefix(1);
    }
}

void RtfScanner::take(char c)
{
    switch (m_state) {
    case State::Text:
        takeText(c);
        break;
    case State::Backslash:
        takeAfterBackslash(c);
        break;
    case State::Word:
    case State::Number:
        // A blank that ends a word is part of it.
        if (!takeWordOrNumber(c) && c != ' ')
            takeText(c);
        break;
    case State::Hexadecimal:
        takeHexadecimal(c);
        break;
    }
}

void RtfScanner::takeText(char c)
{
    switch (c) {
    case '{':
        beginGroup();
        break;
    case '}':
        endGroup();
        break;
    case '\\':
        m_state = State::Backslash;
        break;
    case '\r':
    case '\n':
    case '\0':
        break;
    default:
        byte(static_cast<unsigned char>(c));
        break;
    }
}

void RtfScanner::takeAfterBackslash(char c)
{
    if (isLetter(c)) {
        m_word.assign(1, c);
        m_number.clear();
        m_state = State::Word;
        return;
    }
    m_state = State::Text;
    if (c == '\'') {
        m_state = State::Hexadecimal;
        m_hexadecimal = 0;
        m_hexadecimalDigits = 0;
    } else if (c == '\\' || c == '{' || c == '}') {
        byte(static_cast<unsigned char>(c));
    } else {
        symbol(c);
    }
}

bool RtfScanner::takeWordOrNumber(char c)
{
    if (m_state == State::Word && isLetter(c) && m_word.size() < wordBytes) {
        m_word += c;
        return true;
    }
    const bool isSign = m_state == State::Word && c == '-';
    if ((isSign || isDigit(c)) && m_number.size() < numberBytes) {
        m_number += c;
        m_state = State::Number;
        return true;
    }
    endWord();
    return false;
}

void RtfScanner::endWord()
{
    m_state = State::Text;
    int number = 0;
    const char *end = m_number.data() + m_number.size();
    const bool hasNumber =
        std::from_chars(m_number.data(), end, number).ec == std::errc() && !m_number.empty();
    if (m_word == "bin")
        m_binary = std::max(0, number);
    else
        word(m_word, hasNumber, number);
}

void RtfScanner::takeHexadecimal(char c)
{
    m_hexadecimal = m_hexadecimal * 16 + std::max(0, hexadecimalDigit(c));
    if (++m_hexadecimalDigits < 2)
        return;
    m_state = State::Text;
    byte(static_cast<unsigned char>(m_hexadecimal));
}

} // namespace programs
