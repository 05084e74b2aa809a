#include "programs/replace/text/xmltokens.h"

namespace programs {

namespace {

XmlToken damaged(int position)
{
    return {XmlToken::Kind::Damaged, position, position, {}};
}

XmlToken closedBy(const QByteArray &xml, int position, const char *mark)
{
    const int end = xml.indexOf(mark, position);
    if (end < 0)
        return damaged(position);
    return {XmlToken::Kind::Other, position, end + static_cast<int>(qstrlen(mark)), {}};
}

/// The ">" of a tag; attributes may have one too.
int endOfTag(const QByteArray &xml, int position)
{
    char quote = 0;
    for (; position < xml.size(); ++position) {
        const char c = xml.at(position);
        if (quote != 0)
            quote = c == quote ? '\0' : quote;
        else if (c == '"' || c == '\'')
            quote = c;
        else if (c == '>')
            return position;
    }
    return -1;
}

bool endsName(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '/' || c == '>';
}

XmlToken tagAt(const QByteArray &xml, int position)
{
    const int last = endOfTag(xml, position);
    const bool isEnd = xml.mid(position, 2) == "</";
    int nameEnd = position + (isEnd ? 2 : 1);
    const int nameBegin = nameEnd;
    if (last < 0)
        return damaged(position);
    while (!endsName(xml.at(nameEnd)))
        ++nameEnd;
    XmlToken token{XmlToken::Kind::Start, position, last + 1,
                   xml.mid(nameBegin, nameEnd - nameBegin)};
    if (isEnd)
        token.kind = XmlToken::Kind::End;
    else if (xml.at(last - 1) == '/')
        token.kind = XmlToken::Kind::Empty;
    return token.name.isEmpty() ? damaged(position) : token;
}

} // namespace

XmlToken tokenAt(const QByteArray &xml, int position)
{
    if (position >= xml.size())
        return {XmlToken::Kind::Nothing, position, position, {}};
    if (xml.at(position) != '<') {
        const int next = xml.indexOf('<', position);
        return {XmlToken::Kind::Text, position, next < 0 ? int(xml.size()) : next, {}};
    }
    const QByteArray begin = xml.mid(position, 9);
    if (begin.startsWith("<!--"))
        return closedBy(xml, position, "-->");
    if (begin.startsWith("<![CDATA["))
        return closedBy(xml, position, "]]>");
    if (begin.startsWith("<?"))
        return closedBy(xml, position, "?>");
    return begin.startsWith("<!") ? damaged(position) : tagAt(xml, position);
}

} // namespace programs
