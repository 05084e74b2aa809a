#include "doctor/conditions/neededtext.h"

namespace doctor {

namespace {

constexpr int shortest = 3;
constexpr ushort lastAscii = 0x7f;
/// Escapes of one letter that stand for a class, a place or one character.
constexpr char shortEscapes[] = "dDsSwWhHvVbBAzZnrtRN";

} // namespace

NeededText::NeededText(const QString &pattern) : m_pattern(pattern)
{
    if (!read())
        m_longest.clear();
}

QString NeededText::longest() const
{
    return m_longest.size() < shortest ? QString() : m_longest;
}

QChar NeededText::at(int index) const
{
    return index < m_pattern.size() ? m_pattern.at(index) : QChar();
}

void NeededText::add(QChar character)
{
    if (m_depth == 0 && character.unicode() <= lastAscii)
        m_run += character;
    else
        endRun();
}

void NeededText::endRun()
{
    if (m_run.size() > m_longest.size())
        m_longest = m_run;
    m_run.clear();
}

bool NeededText::read()
{
    while (m_position < m_pattern.size()) {
        const QChar character = m_pattern.at(m_position++);
        switch (character.unicode()) {
        case '\\':
            if (!readEscape())
                return false;
            break;
        case '[':
            endRun();
            if (!skipClass())
                return false;
            break;
        case '(':
            endRun();
            if (!readGroup())
                return false;
            break;
        case ')':
            endRun();
            --m_depth;
            break;
        case '|':
            // Either side is enough.
            if (m_depth == 0)
                return false;
            break;
        case '?':
        case '*':
            m_run.chop(1);
            endRun();
            break;
        case '{':
            m_run.chop(1);
            endRun();
            if (!skipCount())
                return false;
            break;
        case '+':
        case '.':
        case '^':
        case '$':
            endRun();
            break;
        default:
            add(character);
        }
    }
    endRun();
    return m_depth == 0;
}

bool NeededText::readEscape()
{
    const QChar escaped = at(m_position++);
    if (!escaped.isLetterOrNumber()) {
        add(escaped);
        return !escaped.isNull();
    }
    endRun();
    return QLatin1String(shortEscapes).contains(escaped) && at(m_position) != QLatin1Char('{');
}

bool NeededText::readGroup()
{
    ++m_depth;
    if (at(m_position) != QLatin1Char('?'))
        return at(m_position) != QLatin1Char('*');
    // Others can change how all that follows is read.
    const QChar kind = at(m_position + 1);
    const bool isPlain =
        kind == QLatin1Char(':') || kind == QLatin1Char('=') || kind == QLatin1Char('!');
    m_position += 2;
    if (kind != QLatin1Char('<'))
        return isPlain;
    const QChar looksBack = at(m_position++);
    return looksBack == QLatin1Char('=') || looksBack == QLatin1Char('!');
}

bool NeededText::skipClass()
{
    if (at(m_position) == QLatin1Char('^'))
        ++m_position;
    if (at(m_position) == QLatin1Char(']'))
        ++m_position;
    while (m_position < m_pattern.size()) {
        const QChar character = m_pattern.at(m_position++);
        if (character == QLatin1Char(']'))
            return true;
        if (character == QLatin1Char('\\'))
            ++m_position;
        // [:alpha:] has a bracket of its own.
        if (character == QLatin1Char('['))
            return false;
    }
    return false;
}

bool NeededText::skipCount()
{
    while (at(m_position).isDigit() || at(m_position) == QLatin1Char(','))
        ++m_position;
    return at(m_position++) == QLatin1Char('}');
}

} // namespace doctor
