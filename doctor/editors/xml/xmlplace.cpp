#include "doctor/editors/xml/xmlplace.h"

namespace doctor {

namespace {

using Kind = XmlToken::Kind;

/// Reads once through a document and notes where the steps lead.
class Finder
{
public:
    Finder(const QByteArray &content, const QVector<XmlStep> &steps)
        : m_content(content), m_steps(steps), m_reader(content)
    {
    }

    XmlPlace place()
    {
        while (true) {
            const XmlToken token = m_reader.next();
            if (token.kind == Kind::Broken)
                m_place.problem = m_reader.problem();
            if (token.kind == Kind::Broken || token.kind == Kind::Finished)
                return m_place;
            take(token);
            if (token.kind != Kind::Text)
                m_gap = {token.span.end, token.span.end};
        }
    }

private:
    void take(const XmlToken &token)
    {
        if (token.kind == Kind::Start)
            takeStart(token);
        else if (token.kind == Kind::End)
            takeEnd(token);
        else if (token.kind == Kind::Text || token.kind == Kind::Data)
            takeText(token);
    }

    void takeStart(const XmlToken &token)
    {
        const int depth = m_reader.depth() - (token.isEmpty ? 0 : 1);
        if (depth != m_chain.size())
            return;
        if (!m_chain.isEmpty()) {
            m_chain.last().lastChild = token.span;
            m_chain.last().childGap = m_gap;
        }
        if (m_place.parts != depth || depth == m_steps.size() || !fits(token))
            return;
        XmlElement element;
        element.start = token;
        element.gap = m_gap;
        m_chain.append(element);
        ++m_place.parts;
        if (token.isEmpty)
            leave({token.span.end, token.span.end});
    }

    bool fits(const XmlToken &token)
    {
        const XmlStep &step = m_steps.at(m_chain.size());
        if (utf8Text(bytesIn(m_content, token.name)) != step.name)
            return false;
        if (!step.attribute.isEmpty() &&
            attributeIn(m_content, token, step.attribute) != step.value)
            return false;
        int &count = m_chain.isEmpty() ? m_roots : m_chain.last().fitting;
        return ++count == step.index;
    }

    void takeEnd(const XmlToken &token)
    {
        if (m_reader.depth() < m_chain.size())
            leave(token.span);
        if (m_reader.depth() == m_chain.size() && !m_chain.isEmpty())
            m_chain.last().lastChild->end = token.span.end;
    }

    void leave(Span endTag)
    {
        m_chain.last().endTag = endTag;
        if (m_place.parts == m_chain.size())
            m_place.element = m_chain.last();
        m_chain.removeLast();
    }

    void takeText(const XmlToken &token)
    {
        const bool isData = token.kind == Kind::Data;
        const bool isGap = !isData && isBlank(bytesIn(m_content, token.span));
        m_gap = isGap ? token.span : Span{token.span.end, token.span.end};
        if (m_chain.isEmpty() || m_reader.depth() != m_chain.size())
            return;
        XmlElement &element = m_chain.last();
        element.hasText = element.hasText || !isGap;
        if (m_chain.size() < m_steps.size())
            return;
        XmlPiece piece{token.span, {}};
        if (isData)
            piece.data = token.data;
        element.pieces.append(piece);
    }

    const QByteArray &m_content;
    const QVector<XmlStep> &m_steps;
    XmlReader m_reader;
    XmlPlace m_place;
    /// The open elements that the steps lead to.
    QVector<XmlElement> m_chain;
    /// Blank text just before.
    Span m_gap;
    int m_roots = 0;
};

} // namespace

int XmlElement::attributesEnd() const
{
    return start.attributes.isEmpty() ? start.name.end : start.attributes.last().value.end + 1;
}

std::optional<XmlStep> xmlStep(const QString &part)
{
    XmlStep step;
    const int bracket = part.indexOf(QLatin1Char('['));
    step.name = part.left(bracket);
    if (!isXmlName(step.name))
        return std::nullopt;
    if (bracket < 0)
        return step;
    const QString choice = part.mid(bracket + 1).chopped(1);
    if (!part.endsWith(QLatin1Char(']')))
        return std::nullopt;
    if (!choice.startsWith(QLatin1Char('@'))) {
        step.index = choice.toInt();
        return step.index > 0 ? std::optional(step) : std::nullopt;
    }
    const int equals = choice.indexOf(QLatin1Char('='));
    step.attribute = choice.mid(1, equals - 1);
    step.value = choice.mid(equals + 1);
    return equals > 0 && isXmlName(step.attribute) ? std::optional(step) : std::nullopt;
}

XmlPlace placeInXml(const QByteArray &content, const QVector<XmlStep> &steps)
{
    return Finder(content, steps).place();
}

std::optional<QString> attributeIn(const QByteArray &content, const XmlToken &start,
                                   const QString &name)
{
    const QByteArray wanted = name.toUtf8();
    for (const XmlAttribute &attribute : start.attributes) {
        if (bytesIn(content, attribute.name) == wanted)
            return decodedXmlAttribute(bytesIn(content, attribute.value));
    }
    return std::nullopt;
}

Edit withChild(const QByteArray &content, const XmlElement &parent, const QByteArray &text)
{
    if (parent.start.isEmpty)
        return withContent(content, parent, text);
    if (!parent.lastChild)
        return {{parent.endTag.begin, parent.endTag.begin}, text};
    const int end = parent.lastChild->end;
    return {{end, end}, bytesIn(content, parent.childGap) + text};
}

Edit withContent(const QByteArray &content, const XmlElement &element, const QByteArray &text)
{
    const QByteArray name = bytesIn(content, element.start.name);
    return {{element.attributesEnd(), element.start.span.end}, '>' + text + "</" + name + '>'};
}

Span removable(const QByteArray &content, Span element, Span gap)
{
    const bool isIndentation = bytesIn(content, gap).contains('\n');
    return isIndentation ? Span{gap.begin, element.end} : element;
}

} // namespace doctor
