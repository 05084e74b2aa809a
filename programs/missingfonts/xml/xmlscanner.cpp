#include "programs/missingfonts/xml/xmlscanner.h"

#include <cstring>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/xml/xmlelement.h"
#include "programs/missingfonts/xml/xmltext.h"

namespace standin {

namespace {

constexpr std::string_view blanks = " \t\r\n";

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool endsName(char c)
{
    return isBlank(c) || c == '>' || c == '/' || c == '=' || c == '<' || c == '"' || c == '\'';
}

[[noreturn]] void malformed()
{
    throw DocumentError("a part of the document is not well-formed XML");
}

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

} // namespace

XmlScanner::XmlScanner(XmlHandler &handler) : m_handler(handler) {}

void XmlScanner::feed(const char *data, std::size_t size)
{
    m_buffer.append(data, size);
    if (!m_started) {
        if (m_buffer.size() < 4)
            return;
        checkEncoding();
    }
    scan();
    if (m_buffer.size() > limits::xmlTokenBytes)
        throw DocumentError("a part of the document has an unreasonably long XML tag");
}

void XmlScanner::finish()
{
    if (m_buffer.find_first_not_of(blanks) != std::string::npos || !m_open.empty() || !m_sawRoot)
        throw DocumentError("a part of the document ends too early");
}

void XmlScanner::checkEncoding()
{
    m_started = true;
    if (startsWith(m_buffer, "\xEF\xBB\xBF"))
        m_buffer.erase(0, 3);
    else if (m_buffer.find('\0') < 4 || startsWith(m_buffer, "\xFE\xFF") ||
             startsWith(m_buffer, "\xFF\xFE"))
        throw DocumentError("a part of the document is not in UTF-8");
}

void XmlScanner::scan()
{
    std::size_t position = 0;
    while (position < m_buffer.size()) {
        const std::size_t before = position;
        if (m_buffer[position] != '<')
            scanText(position);
        else if (scanToken(position) == Progress::NeedsMore)
            position = before;
        if (position == before)
            break;
    }
    m_buffer.erase(0, position);
}

void XmlScanner::scanText(std::size_t &position)
{
    const std::string_view rest = std::string_view(m_buffer).substr(position);
    const void *next = std::memchr(rest.data(), '<', rest.size());
    const std::size_t size =
        next ? static_cast<std::size_t>(static_cast<const char *>(next) - rest.data())
             : safeTextCut(rest);
    report(rest.substr(0, size), false);
    position += size;
}

XmlScanner::Progress XmlScanner::scanToken(std::size_t &position)
{
    constexpr std::string_view characterData = "<![CDATA[";
    const std::string_view rest = std::string_view(m_buffer).substr(position);
    if (rest.size() < 2)
        return Progress::NeedsMore;
    switch (rest[1]) {
    case '/':
        return scanEndTag(position);
    case '?':
        return skipTo(position, "?>");
    case '!':
        if (rest.size() < characterData.size())
            return Progress::NeedsMore;
        if (startsWith(rest, "<!--")) {
            position += 4;
            return skipTo(position, "-->");
        }
        if (startsWith(rest, characterData)) {
            position += characterData.size();
            return scanCharacterData(position);
        }
        throw DocumentError("a part has a document type declaration, which it must not have");
    default:
        return scanStartTag(position);
    }
}

XmlScanner::Progress XmlScanner::skipTo(std::size_t &position, std::string_view end) const
{
    const std::size_t found = m_buffer.find(end, position);
    if (found == std::string::npos)
        return Progress::NeedsMore;
    position = found + end.size();
    return Progress::Done;
}

XmlScanner::Progress XmlScanner::scanCharacterData(std::size_t &position)
{
    const std::size_t start = position;
    if (skipTo(position, "]]>") == Progress::NeedsMore)
        return Progress::NeedsMore;
    report(std::string_view(m_buffer).substr(start, position - start - 3), true);
    return Progress::Done;
}

void XmlScanner::report(std::string_view text, bool literal)
{
    if (m_open.empty()) {
        if (text.find_first_not_of(blanks) != std::string_view::npos)
            malformed();
        return;
    }
    if (text.empty())
        return;
    if (literal || text.find('&') == std::string_view::npos) {
        if (!isSkipping())
            m_handler.text(text);
        return;
    }
    m_resolved.clear();
    appendXmlText(m_resolved, text);
    if (!isSkipping())
        m_handler.text(m_resolved);
}

XmlScanner::Progress XmlScanner::scanEndTag(std::size_t &position)
{
    const std::size_t end = m_buffer.find('>', position);
    if (end == std::string::npos)
        return Progress::NeedsMore;
    std::string_view name = std::string_view(m_buffer).substr(position + 2, end - position - 2);
    while (!name.empty() && isBlank(name.back()))
        name.remove_suffix(1);
    if (m_open.empty() || name != std::string_view(m_openNames).substr(m_open.back().nameStart))
        malformed();
    closeElement();
    position = end + 1;
    return Progress::Done;
}

XmlScanner::Progress XmlScanner::scanStartTag(std::size_t &position)
{
    const std::size_t nameStart = ++position;
    while (position < m_buffer.size() && !endsName(m_buffer[position]))
        ++position;
    const std::size_t nameEnd = position;
    bool isEmpty = false;
    if (scanAttributes(position, isEmpty) == Progress::NeedsMore)
        return Progress::NeedsMore;
    if (nameEnd == nameStart)
        malformed();
    openElement(std::string_view(m_buffer).substr(nameStart, nameEnd - nameStart));
    if (isEmpty)
        closeElement();
    return Progress::Done;
}

XmlScanner::Progress XmlScanner::scanAttributes(std::size_t &position, bool &isEmpty)
{
    m_attributes.clear();
    while (true) {
        const std::size_t gap = position;
        while (position < m_buffer.size() && isBlank(m_buffer[position]))
            ++position;
        if (position + 1 >= m_buffer.size()) {
            if (position < m_buffer.size() && m_buffer[position] == '>')
                break;
            return Progress::NeedsMore;
        }
        if (m_buffer[position] == '>')
            break;
        if (m_buffer[position] == '/') {
            if (m_buffer[++position] != '>')
                malformed();
            isEmpty = true;
            break;
        }
        if (gap == position)
            malformed();
        if (scanAttribute(position) == Progress::NeedsMore)
            return Progress::NeedsMore;
    }
    ++position;
    return Progress::Done;
}

XmlScanner::Progress XmlScanner::scanAttribute(std::size_t &position)
{
    const std::size_t size = m_buffer.size();
    const std::size_t nameStart = position;
    while (position < size && !endsName(m_buffer[position]))
        ++position;
    const std::size_t nameEnd = position;
    while (position < size && isBlank(m_buffer[position]))
        ++position;
    if (position == size)
        return Progress::NeedsMore;
    if (m_buffer[position] != '=' || nameEnd == nameStart)
        malformed();
    do
        ++position;
    while (position < size && isBlank(m_buffer[position]));
    if (position == size)
        return Progress::NeedsMore;
    const char quote = m_buffer[position];
    if (quote != '"' && quote != '\'')
        malformed();
    const std::size_t end = m_buffer.find(quote, position + 1);
    if (end == std::string::npos)
        return Progress::NeedsMore;
    const std::string_view text = m_buffer;
    const std::string_view value = text.substr(position + 1, end - position - 1);
    if (value.find('<') != std::string_view::npos)
        malformed();
    m_attributes.push_back({text.substr(nameStart, nameEnd - nameStart), value});
    position = end + 1;
    return Progress::Done;
}

void XmlScanner::openElement(std::string_view name)
{
    if (m_open.empty() && m_sawRoot)
        malformed();
    m_sawRoot = true;
    if (m_open.size() >= limits::xmlDepth)
        throw DocumentError("the document's elements are nested too deeply");
    const std::size_t depth = m_open.size() + 1;
    bool binds = false;
    for (const XmlElement::Attribute &attribute : m_attributes) {
        if (!startsWith(attribute.name, "xmlns"))
            continue;
        const std::string_view prefix = attribute.name.substr(5);
        if (!prefix.empty() && prefix.front() != ':')
            continue;
        m_namespaces.bind(prefix.empty() ? prefix : prefix.substr(1), attribute.value, depth);
        binds = true;
    }
    const Tag tag = m_namespaces.tag(name);
    m_open.push_back({m_openNames.size(), tag, binds});
    m_openNames.append(name);
    if (isSkipping())
        return;
    if (tag == tagOf(Vocabulary::Compatibility, "Fallback") ||
        !m_handler.startElement(XmlElement(tag, m_attributes, m_namespaces)))
        m_skipFrom = depth;
}

void XmlScanner::closeElement()
{
    const Open closed = m_open.back();
    const std::size_t depth = m_open.size();
    m_open.pop_back();
    m_openNames.resize(closed.nameStart);
    if (closed.bindsNamespaces)
        m_namespaces.leave(depth);
    if (m_skipFrom == depth)
        m_skipFrom = 0;
    else if (!isSkipping())
        m_handler.endElement(closed.tag);
}

} // namespace standin
