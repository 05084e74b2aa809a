#include "doctor/editors/xml/xcuplace.h"

#include "doctor/editors/xml/xmlplace.h"
#include "texts/texts.h"

namespace doctor {

namespace {

using Kind = XmlToken::Kind;

constexpr char registryNamespace[] = "http://openoffice.org/2001/registry";

/// An open element; matched is how much of the path its names make up, -1 if another node is meant.
struct Frame
{
    QByteArray name;
    int begin = 0;
    Span gap;
    int matched = -1;
    /// It has something besides properties to be removed.
    bool hasOthers = false;
    QVector<Span> removal;
};

/// How much of the path is made up after a node of this name, from matched on; -1 if it is another.
int matchedWith(const QString &path, int matched, const QString &name)
{
    QString escaped = name;
    escaped.replace(QLatin1Char('&'), QLatin1String("&amp;"))
        .replace(QLatin1Char('"'), QLatin1String("&quot;"))
        .replace(QLatin1Char('\''), QLatin1String("&apos;"));
    const QString inSet = QStringLiteral("['%1']").arg(escaped);
    if (matched < 0 || matched >= path.size() || path.at(matched) != QLatin1Char('/'))
        return -1;
    const int bracket = path.indexOf(QLatin1String("['"), matched);
    const int slash = path.indexOf(QLatin1Char('/'), matched + 1);
    int end = matched + 1;
    if (QStringView(path).mid(end).startsWith(name))
        end += name.size();
    else if (bracket >= 0 && (slash < 0 || bracket < slash) &&
             QStringView(path).mid(bracket).startsWith(inSet))
        end = bracket + inSet.size();
    else
        return -1;
    return end == path.size() || path.at(end) == QLatin1Char('/') ? end : -1;
}

int matchedByItem(const QString &path, const QString &item)
{
    const bool fits = !item.isEmpty() && path.startsWith(item) &&
                      (item.size() == path.size() || path.at(item.size()) == QLatin1Char('/'));
    return fits ? item.size() : -1;
}

class Finder
{
public:
    Finder(const QByteArray &content, const QString &path, const QString &name)
        : m_content(content), m_path(path), m_name(name), m_reader(content)
    {
    }

    XcuPlace place()
    {
        while (m_place.problem.isEmpty()) {
            const XmlToken token = m_reader.next();
            if (token.kind == Kind::Broken)
                m_place.problem = m_reader.problem();
            if (token.kind == Kind::Finished)
                break;
            take(token);
            if (token.kind != Kind::Text)
                m_gap = {token.span.end, token.span.end};
        }
        return m_place;
    }

private:
    void take(const XmlToken &token)
    {
        if (token.kind == Kind::Start) {
            takeStart(token);
            if (token.isEmpty)
                takeEnd({token.span.end, token.span.end});
        } else if (token.kind == Kind::End) {
            takeEnd(token.span);
        } else if (token.kind == Kind::Text || token.kind == Kind::Data) {
            takeText(token);
        } else if (!m_open.isEmpty()) {
            m_open.last().hasOthers = true;
            markValue();
        }
    }

    void takeStart(const XmlToken &token)
    {
        Frame frame;
        frame.name = bytesIn(m_content, token.name);
        frame.begin = token.span.begin;
        frame.gap = m_gap;
        const QByteArray parent = m_open.isEmpty() ? QByteArray() : m_open.last().name;
        const int matched = m_open.isEmpty() ? -1 : m_open.last().matched;
        const QString name = attribute(token, "oor:name");
        if (m_open.isEmpty())
            takeRoot(token);
        else if (m_open.size() == 1 && frame.name == "item")
            frame.matched = matchedByItem(m_path, attribute(token, "oor:path"));
        else if (frame.name == "node" && (parent == "item" || parent == "node"))
            frame.matched = matchedWith(m_path, matched, name);
        else if (frame.name == "prop" && matched == m_path.size() && name == m_name &&
                 (parent == "item" || parent == "node"))
            frame.matched = beginProperty(token) ? matched : -1;
        else if (m_value && frame.name == "unicode")
            m_value->text += QChar(attribute(token, "oor:scalar").toUShort());
        else
            takeOther(token, frame.name, parent == "prop" && matched >= 0);
        if (frame.name == "node" && frame.matched >= 0 && isReset(token))
            m_place.property.reset();
        m_open.append(frame);
    }

    void takeRoot(const XmlToken &token)
    {
        const bool isRegistry = bytesIn(m_content, token.name) == "oor:items" &&
                                attribute(token, "xmlns:oor") == QLatin1String(registryNamespace);
        if (!isRegistry)
            m_place.problem = texts::tr("This is not a list of LibreOffice's settings.");
    }

    /// False if the property is only said to be removed.
    bool beginProperty(const XmlToken &token)
    {
        if (isReset(token) && attribute(token, "oor:op") == QLatin1String("remove")) {
            m_place.property.reset();
            return false;
        }
        return true;
    }

    void takeOther(const XmlToken &token, const QByteArray &name, bool isInProperty)
    {
        markValue();
        if (!isInProperty || name != "value")
            return;
        if (attributeIn(m_content, token, QStringLiteral("xml:lang"))) {
            m_place.hasLanguages = true;
            return;
        }
        m_value = XcuProperty();
        m_value->position = token.span.begin;
        m_value->value = token;
        if (attribute(token, "xsi:nil") != QLatin1String("true"))
            m_value->text = QLatin1String("");
    }

    void takeEnd(Span tag)
    {
        const Frame frame = m_open.takeLast();
        if (m_value && frame.begin == m_value->position) {
            m_value->endTag = tag;
            m_place.property = m_value;
            m_value.reset();
        }
        if (m_open.isEmpty())
            return;
        Frame &parent = m_open.last();
        const Span whole = removable(m_content, {frame.begin, tag.end}, frame.gap);
        if (frame.name == "prop" && frame.matched >= 0)
            parent.removal.append(whole);
        else if (frame.name == "item" && !frame.removal.isEmpty() && !frame.hasOthers)
            m_place.removal.append(whole);
        else
            passOn(frame, parent);
    }

    /// What to cut inside an element that stays.
    void passOn(const Frame &frame, Frame &parent)
    {
        parent.hasOthers = true;
        (m_open.size() == 1 ? m_place.removal : parent.removal) += frame.removal;
    }

    void takeText(const XmlToken &token)
    {
        const QByteArray text = bytesIn(m_content, token.span);
        const bool isData = token.kind == Kind::Data;
        m_gap = !isData && isBlank(text) ? token.span : Span{token.span.end, token.span.end};
        if (!m_value || m_open.last().name != "value")
            return;
        m_value->text += isData ? plainXml(bytesIn(m_content, token.data))
                                : decodedXml(text).value_or(QString());
    }

    void markValue()
    {
        if (m_value)
            m_value->hasOthers = true;
    }

    bool isReset(const XmlToken &token) const
    {
        const QString operation = attribute(token, "oor:op");
        return operation == QLatin1String("replace") || operation == QLatin1String("remove");
    }

    QString attribute(const XmlToken &token, const char *name) const
    {
        return attributeIn(m_content, token, QLatin1String(name)).value_or(QString());
    }

    const QByteArray &m_content;
    const QString &m_path;
    const QString &m_name;
    XmlReader m_reader;
    XcuPlace m_place;
    QVector<Frame> m_open;
    /// The value that is being read.
    std::optional<XcuProperty> m_value;
    /// Blank text just before.
    Span m_gap;
};

} // namespace

XcuPlace placeInXcu(const QByteArray &content, const QString &path, const QString &name)
{
    return Finder(content, path, name).place();
}

} // namespace doctor
