#include "programs/missingfonts/xml/xmlscanner.h"

#include <cstring>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/xml/xmlelement.h"
#include "programs/missingfonts/xml/xmltext.h"

namespace programs {

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
    m_position = 0;
    while (m_position < m_buffer.size()) {
        const std::size_t before = m_position;
        if (m_buffer[m_position] != '<')
            scanText();
        else if (scanToken() == Progress::NeedsMore)
            m_position = before;
        if (m_position == before)
            break;
    }
    m_buffer.erase(0, m_position);
}

void XmlScanner::scanText()
{
    const std::string_view rest = std::string_view(m_buffer).substr(m_position);
    const void *next = std::memchr(rest.data(), '<', rest.size());
    const std::size_t size =
        next ? static_cast<std::size_t>(static_cast<const char *>(next) - rest.data())
             : safeTextCut(rest);
    report(rest.substr(0, size), false);
    m_position += size;
}

XmlScanner::Progress XmlScanner::scanToken()
{
    constexpr std::string_view characterData = "<![CDATA[";
    const std::string_view rest = std::string_view(m_buffer).substr(m_position);
    if (rest.size() < 2)
        return Progress::NeedsMore;
    switch (rest[1]) {
    case '/':
        return scanEndTag();
    case '?':
        return skipTo("?>");
    case '!':
        if (rest.size() < characterData.size())
            return Progress::NeedsMore;
        if (startsWith(rest, "<!--")) {
            m_position += 4;
            return skipTo("-->");
        }
        if (startsWith(rest, characterData)) {
            m_position += characterData.size();
            return scanCharacterData();
        }
        throw DocumentError("a part has a document type declaration, which it must not have");
    default:
        return scanStartTag();
    }
}

XmlScanner::Progress XmlScanner::skipTo(std::string_view end)
{
    const std::size_t found = m_buffer.find(end, m_position);
    if (found == std::string::npos)
        return Progress::NeedsMore;
    m_position = found + end.size();
    return Progress::Done;
}

XmlScanner::Progress XmlScanner::scanCharacterData()
{
    const std::size_t start = m_position;
    if (skipTo("]]>") == Progress::NeedsMore)
        return Progress::NeedsMore;
    report(std::string_view(m_buffer).substr(start, m_position - start - 3), true);
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

XmlScanner::Progress XmlScanner::scanEndTag()
{
    const std::size_t end = m_buffer.find('>', m_position);
    if (end == std::string::npos)
        return Progress::NeedsMore;
    std::string_view name = std::string_view(m_buffer).substr(m_position + 2, end - m_position - 2);
    while (!name.empty() && isBlank(name.back()))
        name.remove_suffix(1);
    if (m_open.empty() || name != std::string_view(m_openNames).substr(m_open.back().nameStart))
        malformed();
    closeElement();
    m_position = end + 1;
    return Progress::Done;
}

XmlScanner::Progress XmlScanner::scanStartTag()
{
    const std::size_t nameStart = ++m_position;
    while (m_position < m_buffer.size() && !endsName(m_buffer[m_position]))
        ++m_position;
    const std::size_t nameEnd = m_position;
    if (scanAttributes() == Progress::NeedsMore)
        return Progress::NeedsMore;
    if (nameEnd == nameStart)
        malformed();
    openElement(std::string_view(m_buffer).substr(nameStart, nameEnd - nameStart));
    if (m_buffer[m_position - 2] == '/')
        closeElement();
    return Progress::Done;
}

XmlScanner::Progress XmlScanner::scanAttributes()
{
    m_attributes.clear();
    while (true) {
        const std::size_t gap = m_position;
        while (m_position < m_buffer.size() && isBlank(m_buffer[m_position]))
            ++m_position;
        if (m_position + 1 >= m_buffer.size()) {
            if (m_position < m_buffer.size() && m_buffer[m_position] == '>')
                break;
            return Progress::NeedsMore;
        }
        if (m_buffer[m_position] == '>')
            break;
        if (m_buffer[m_position] == '/') {
            if (m_buffer[++m_position] != '>')
                malformed();
            break;
        }
        if (gap == m_position)
            malformed();
        if (scanAttribute() == Progress::NeedsMore)
            return Progress::NeedsMore;
    }
    ++m_position;
    return Progress::Done;
}

XmlScanner::Progress XmlScanner::scanAttribute()
{
    const std::size_t size = m_buffer.size();
    const std::size_t nameStart = m_position;
    while (m_position < size && !endsName(m_buffer[m_position]))
        ++m_position;
    const std::size_t nameEnd = m_position;
    while (m_position < size && isBlank(m_buffer[m_position]))
        ++m_position;
    if (m_position == size)
        return Progress::NeedsMore;
    if (m_buffer[m_position] != '=' || nameEnd == nameStart)
        malformed();
    do
        ++m_position;
    while (m_position < size && isBlank(m_buffer[m_position]));
    if (m_position == size)
        return Progress::NeedsMore;
    const char quote = m_buffer[m_position];
    if (quote != '"' && quote != '\'')
        malformed();
    const std::size_t end = m_buffer.find(quote, m_position + 1);
    if (end == std::string::npos)
        return Progress::NeedsMore;
    const std::string_view text = m_buffer;
    const std::string_view value = text.substr(m_position + 1, end - m_position - 1);
    if (value.find('<') != std::string_view::npos)
        malformed();
    m_attributes.push_back({text.substr(nameStart, nameEnd - nameStart), value});
    m_position = end + 1;
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

} // namespace programs
