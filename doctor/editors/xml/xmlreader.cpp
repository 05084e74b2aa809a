#include "doctor/editors/xml/xmlreader.h"

#include <QByteArrayList>

#include <algorithm>
#include <cstring>

#include "texts/texts.h"

namespace doctor {

namespace {

using Kind = XmlToken::Kind;

constexpr int mostAttributes = 1000;

/// Where a byte is not UTF-8 or a character not allowed in XML; -1 if all is well.
int badCharacterIn(const QByteArray &content)
{
    for (int i = markSize(content); i < content.size();) {
        const int position = i;
        // Most of any file is ASCII.
        const auto character =
            content.at(i) >= ' ' ? uint(content.at(i++)) : nextCharacter(content, i);
        if (!character || !isXmlCharacter(*character))
            return position;
    }
    return -1;
}

bool isDeclaration(const QByteArrayList &names, const QByteArrayList &values)
{
    if (names.isEmpty() || names.first() != "version" || values.first() != "1.0")
        return false;
    const int last = names.indexOf("standalone");
    const QByteArrayList known{"version", "encoding", "standalone"};
    int place = -1;
    for (const QByteArray &name : names) {
        const int next = known.indexOf(name);
        if (next <= place)
            return false;
        place = next;
    }
    return last < 0 || values.at(last) == "yes" || values.at(last) == "no";
}

bool hasTwins(const QByteArray &content, const QVector<XmlAttribute> &attributes)
{
    if (attributes.size() < 2)
        return false;
    QByteArrayList names;
    for (const XmlAttribute &attribute : attributes)
        names.append(bytesIn(content, attribute.name));
    std::sort(names.begin(), names.end());
    return std::adjacent_find(names.begin(), names.end()) != names.end();
}

} // namespace

XmlReader::XmlReader(const QByteArray &content) : m_content(content), m_position(markSize(content))
{
    const int bad = badCharacterIn(content);
    if (bad >= 0)
        broken(texts::tr("this is not an XML character in UTF-8."), bad);
}

XmlToken XmlReader::next()
{
    if (!m_problem.isEmpty())
        return {};
    if (m_position >= m_content.size())
        return finished();
    return m_content.at(m_position) == '<' ? readMarkup() : readText();
}

bool XmlReader::startsWith(const char *text) const
{
    const auto length = static_cast<int>(std::strlen(text));
    return m_content.size() - m_position >= length &&
           std::memcmp(m_content.constData() + m_position, text, std::strlen(text)) == 0;
}

bool XmlReader::skipSpace()
{
    const int begin = m_position;
    while (startsWith(" ") || startsWith("\t") || startsWith("\n") || startsWith("\r"))
        ++m_position;
    return m_position > begin;
}

std::optional<Span> XmlReader::readName()
{
    const int begin = m_position;
    m_position = xmlNameEnd(m_content, begin);
    if (m_position == begin)
        return std::nullopt;
    return Span{begin, m_position};
}

XmlToken XmlReader::broken(const QString &problem, int position)
{
    m_problem = atLine(m_content, position, problem);
    XmlToken token;
    token.span = {position, position};
    return token;
}

XmlToken XmlReader::readText()
{
    XmlToken token;
    const int tag = m_content.indexOf('<', m_position);
    token.kind = Kind::Text;
    token.span = {m_position, tag < 0 ? int(m_content.size()) : tag};
    const QByteArray text = bytesIn(m_content, token.span);
    if (m_open.isEmpty() && !isBlank(text))
        return broken(texts::tr("text stands outside the root element."), m_position);
    if (text.contains("]]>"))
        return broken(texts::tr("“]]>” stands in a text."), m_position);
    if (text.contains('&') && !decodedXml(text))
        return broken(texts::tr("an entity is not one of the five of XML."), m_position);
    m_position = token.span.end;
    return token;
}

XmlToken XmlReader::readMarkup()
{
    if (startsWith("<?"))
        return readInstruction();
    if (startsWith("</"))
        return readEnd();
    if (startsWith("<!--"))
        return readUntil(Kind::Comment, 4, "-->");
    if (startsWith("<![CDATA[") && !m_open.isEmpty())
        return readUntil(Kind::Data, 9, "]]>");
    if (startsWith("<!"))
        return broken(texts::tr("a DOCTYPE or another declaration is not read."), m_position);
    return readStart();
}

XmlToken XmlReader::readUntil(Kind kind, int opening, const char *text)
{
    XmlToken token;
    token.kind = kind;
    const int begin = m_position + opening;
    const int end = m_content.indexOf(text, begin);
    if (end < 0)
        return broken(texts::tr("a comment, CDATA section or instruction has no end."), m_position);
    token.data = {begin, end};
    token.span = {m_position, end + static_cast<int>(std::strlen(text))};
    const QByteArray data = bytesIn(m_content, token.data);
    if (kind == Kind::Comment && (data.contains("--") || data.endsWith('-')))
        return broken(texts::tr("“--” stands in a comment."), m_position);
    m_position = token.span.end;
    return token;
}

XmlToken XmlReader::readInstruction()
{
    const int begin = m_position;
    m_position += 2;
    const auto name = readName();
    const QByteArray target = name ? bytesIn(m_content, *name) : QByteArray();
    const bool isSpaced = skipSpace();
    // "Namespaces in XML" allows no colon in it.
    if (!name || target.contains(':') || (!isSpaced && !startsWith("?>")))
        return broken(texts::tr("an instruction has no name."), begin);
    const bool isFirst = begin == markSize(m_content);
    if (target.toLower() != "xml") {
        m_position = begin;
        return readUntil(Kind::Instruction, 2, "?>");
    }
    m_position = name->end;
    XmlToken token;
    token.kind = Kind::Instruction;
    const QString problem = readAttributes(token);
    QByteArrayList names;
    QByteArrayList values;
    for (const XmlAttribute &attribute : qAsConst(token.attributes)) {
        names.append(bytesIn(m_content, attribute.name));
        values.append(bytesIn(m_content, attribute.value));
    }
    if (!problem.isEmpty() || !isFirst || target != "xml" || !startsWith("?>") ||
        !isDeclaration(names, values))
        return broken(texts::tr("the XML declaration is broken or not of XML 1.0."), begin);
    const int encoding = names.indexOf("encoding");
    if (encoding >= 0 && values.at(encoding).toLower() != "utf-8")
        return broken(texts::tr("the XML is not in UTF-8."), begin);
    m_position += 2;
    token.span = {begin, m_position};
    return token;
}

XmlToken XmlReader::readStart()
{
    XmlToken token;
    token.kind = Kind::Start;
    token.span.begin = m_position++;
    const auto name = readName();
    if (!name)
        return broken(texts::tr("an element has no name."), token.span.begin);
    token.name = *name;
    if (const QString problem = readAttributes(token); !problem.isEmpty())
        return broken(problem, m_position);
    token.isEmpty = startsWith("/>");
    if (!token.isEmpty && !startsWith(">"))
        return broken(texts::tr("a tag has no end."), token.span.begin);
    m_position += token.isEmpty ? 2 : 1;
    token.span.end = m_position;
    if (const QString problem = nestingProblem(token); !problem.isEmpty())
        return broken(problem, token.span.begin);
    m_hasRoot = true;
    if (!token.isEmpty)
        m_open.append(token.name);
    return token;
}

QString XmlReader::nestingProblem(const XmlToken &token)
{
    if (m_open.isEmpty() && m_hasRoot)
        return texts::tr("there is a second root element.");
    if (m_open.size() == maximumDepth)
        return texts::tr("the content is nested deeper than 256 levels.");
    return hasTwins(m_content, token.attributes) ? texts::tr("an element has an attribute twice.")
                                                 : QString();
}

QString XmlReader::readAttributes(XmlToken &token)
{
    while (true) {
        const bool isSpaced = skipSpace();
        if (m_position >= m_content.size() || startsWith(">") || startsWith("/>") ||
            startsWith("?>"))
            return {};
        if (!isSpaced)
            return texts::tr("a space is missing before an attribute.");
        if (token.attributes.size() == mostAttributes)
            return texts::tr("an element has more than 1000 attributes.");
        XmlAttribute attribute;
        if (QString problem = readAttribute(attribute); !problem.isEmpty())
            return problem;
        token.attributes.append(attribute);
    }
}

QString XmlReader::readAttribute(XmlAttribute &attribute)
{
    const auto name = readName();
    skipSpace();
    if (!name || !startsWith("="))
        return texts::tr("an attribute has no name or no value.");
    attribute.name = *name;
    ++m_position;
    skipSpace();
    if (!startsWith("\"") && !startsWith("'"))
        return texts::tr("an attribute's value has no quotes.");
    const char quote = m_content.at(m_position);
    const int begin = m_position + 1;
    const int end = m_content.indexOf(quote, begin);
    if (end < 0)
        return texts::tr("an attribute's value has no end.");
    attribute.value = {begin, end};
    const QByteArray value = bytesIn(m_content, attribute.value);
    if (value.contains('<') || (value.contains('&') && !decodedXml(value)))
        return texts::tr(
            "an attribute's value has a “<” or an entity that is not one of the five of XML.");
    m_position = end + 1;
    return {};
}

XmlToken XmlReader::readEnd()
{
    XmlToken token;
    token.kind = Kind::End;
    token.span.begin = m_position;
    m_position += 2;
    const auto name = readName();
    skipSpace();
    const bool fits = name && !m_open.isEmpty() && startsWith(">") &&
                      bytesIn(m_content, *name) == bytesIn(m_content, m_open.last());
    if (!fits)
        return broken(texts::tr("an end tag does not fit its start."), token.span.begin);
    token.name = *name;
    token.span.end = ++m_position;
    m_open.removeLast();
    return token;
}

XmlToken XmlReader::finished()
{
    if (!m_open.isEmpty() || !m_hasRoot)
        return broken(texts::tr("the content ends before its root element."), m_position);
    XmlToken token;
    token.kind = Kind::Finished;
    token.span = {m_position, m_position};
    return token;
}

} // namespace doctor
