#include "doctor/why/input/places/shelllexer.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

namespace doctor {

namespace {

/// Longer ones first.
constexpr std::array<const char *, 20> operators{"<<<", "<<-", "&>>", ";;&", "&&", "||", ";;",
                                                 ";&",  "<<",  ">>",  "<&",  ">&", "<>", ">|",
                                                 "&>",  "|&",  "|",   "&",   ";",  "<"};

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

bool endsWord(char c)
{
    return c == '\0' || std::strchr(" \t\n;&|<>()", c) != nullptr;
}

bool isNameLetter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool isNumber(const QByteArray &text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](char c) {
        return std::isdigit(static_cast<unsigned char>(c)) != 0;
    });
}

} // namespace

void ShellLexer::step()
{
    if (at(m_position) == '\n')
        ++m_line;
    ++m_position;
}

void ShellLexer::skipBlanks()
{
    while (!isAtEnd()) {
        if (at(m_position) == '\\' && at(m_position + 1) == '\n') {
            step();
            step();
        } else if (isBlank(at(m_position))) {
            step();
        } else if (at(m_position) == '#') {
            while (!isAtEnd() && at(m_position) != '\n')
                step();
        } else {
            return;
        }
    }
}

void ShellLexer::skipHereDocuments()
{
    while (!m_hereDocuments.isEmpty() && !isAtEnd()) {
        const int feed = m_script.indexOf('\n', m_position);
        const int end = feed < 0 ? m_script.size() : feed;
        QByteArray line = m_script.mid(m_position, end - m_position);
        while (m_hereDocuments.constFirst().isIndented && line.startsWith('\t'))
            line.remove(0, 1);
        if (line == m_hereDocuments.constFirst().end)
            m_hereDocuments.removeFirst();
        m_position = feed < 0 ? end : end + 1;
        ++m_line;
    }
}

ShellToken ShellLexer::next()
{
    skipBlanks();
    ShellToken token;
    token.line = m_line;
    if (isAtEnd())
        return token;
    const char c = at(m_position);
    if (c == '\n') {
        token.kind = ShellToken::Kind::NewLine;
        step();
        skipHereDocuments();
        return token;
    }
    return endsWord(c) ? readOperator() : readWord();
}

ShellToken ShellLexer::readOperator()
{
    ShellToken token;
    token.kind = ShellToken::Kind::Operator;
    token.line = m_line;
    token.text = m_script.mid(m_position, 1);
    for (const char *known : operators) {
        if (m_script.mid(m_position, static_cast<int>(std::strlen(known))) == known) {
            token.text = known;
            break;
        }
    }
    // A zero byte, which shells leave out.
    m_position += std::max(1, int(token.text.size()));
    m_awaitsEnd = token.text == "<<" || token.text == "<<-";
    m_isIndented = token.text == "<<-";
    return token;
}

ShellToken ShellLexer::readWord()
{
    ShellToken word;
    word.kind = ShellToken::Kind::Word;
    word.line = m_line;
    const int begin = m_position;
    while (!isAtEnd() && !endsWord(at(m_position)) && !m_isBroken)
        readPiece(word);
    word.raw = m_script.mid(begin, m_position - begin);
    if (m_isBroken)
        word.kind = ShellToken::Kind::Broken;
    else if (isNumber(word.raw) && (at(m_position) == '<' || at(m_position) == '>'))
        return readOperator(); // the number of what is redirected
    if (m_awaitsEnd)
        m_hereDocuments.append({word.text, m_isIndented});
    m_awaitsEnd = false;
    return word;
}

void ShellLexer::readPiece(ShellToken &word)
{
    const char c = at(m_position);
    switch (c) {
    case '\\':
        step();
        if (isAtEnd())
            return;
        if (at(m_position) != '\n') {
            word.text += at(m_position);
            word.isQuoted = true;
        }
        step();
        return;
    case '\'':
        readSingleQuotes(word);
        return;
    case '"':
        readDoubleQuotes(word);
        return;
    case '$':
        readDollar(word);
        return;
    case '`':
        skipBackticks();
        word.isLiteral = false;
        return;
    default:
        break;
    }
    // A user's home directory.
    if (c == '~' && (word.text.isEmpty() || word.text.endsWith('=') || word.text.endsWith(':')))
        word.isLiteral = false;
    if (std::strchr("*?[{", c))
        word.isPattern = true;
    if (c == '=' && word.equals < 0 && !word.isQuoted && word.isLiteral)
        word.equals = word.text.size();
    word.text += c;
    step();
    const bool isList = c == '=' && word.equals == word.text.size() - 1 && at(m_position) == '(';
    if (isList) {
        step();
        skipBracket('(', ')');
        word.isLiteral = false;
    }
}

void ShellLexer::readSingleQuotes(ShellToken &word)
{
    word.isQuoted = true;
    const int begin = m_position + 1;
    skipQuoted('\'');
    if (!m_isBroken)
        word.text += m_script.mid(begin, m_position - begin - 1);
}

void ShellLexer::readDoubleQuotes(ShellToken &word)
{
    word.isQuoted = true;
    step();
    while (!isAtEnd() && at(m_position) != '"' && !m_isBroken) {
        const char c = at(m_position);
        if (c == '$') {
            readDollar(word);
        } else if (c == '`') {
            skipBackticks();
            word.isLiteral = false;
        } else if (c == '\\' && m_position + 1 < m_script.size() &&
                   std::strchr("$`\"\\\n", at(m_position + 1))) {
            step();
            if (at(m_position) != '\n')
                word.text += at(m_position);
            step();
        } else {
            word.text += c;
            step();
        }
    }
    if (isAtEnd())
        m_isBroken = true;
    else
        step();
}

void ShellLexer::readDollar(ShellToken &word)
{
    step();
    const char c = at(m_position);
    if (isAtEnd() || (endsWord(c) && c != '(') || (c == '"' && word.isQuoted)) {
        word.text += '$';
        return;
    }
    word.isLiteral = false;
    if (c == '(' || c == '{') {
        step();
        skipBracket(c, c == '(' ? ')' : '}');
    } else if (c == '\'' && !word.isQuoted) {
        // ANSI-C quoting, in which a backslash escapes.
        step();
        while (!isAtEnd() && at(m_position) != '\'') {
            if (at(m_position) == '\\')
                step();
            step();
        }
        m_isBroken = isAtEnd();
        step();
    } else if (isNameLetter(c)) {
        while (isNameLetter(at(m_position)))
            step();
    } else if (c != '"') {
        step();
    }
}

void ShellLexer::skipBackticks()
{
    step();
    while (!isAtEnd() && at(m_position) != '`') {
        if (at(m_position) == '\\')
            step();
        step();
    }
    m_isBroken = m_isBroken || isAtEnd();
    step();
}

void ShellLexer::skipQuoted(char quote)
{
    step();
    while (!isAtEnd() && at(m_position) != quote) {
        if (quote == '"' && at(m_position) == '\\')
            step();
        step();
    }
    m_isBroken = m_isBroken || isAtEnd();
    step();
}

void ShellLexer::skipBracket(char open, char close)
{
    for (int depth = 1; depth > 0;) {
        if (isAtEnd()) {
            m_isBroken = true;
            return;
        }
        const char c = at(m_position);
        if (c == '\'' || c == '"') {
            skipQuoted(c);
            continue;
        }
        if (c == '\\')
            step();
        else if (c == open)
            ++depth;
        else if (c == close)
            --depth;
        step();
    }
}

} // namespace doctor
