#pragma once

#include "doctor/editors/content/content.h"

#include <QVector>

namespace doctor {

struct XmlAttribute
{
    Span name;
    /// Between the quotes.
    Span value;
};

struct XmlToken
{
    enum class Kind {
        Start,
        End,
        Text,
        Data,
        Comment,
        Instruction,
        Finished,
        Broken
    };

    Kind kind = Kind::Broken;
    Span span;
    /// Of an element.
    Span name;
    /// The characters of a CDATA section.
    Span data;
    QVector<XmlAttribute> attributes;
    /// A start without an end: "<name/>".
    bool isEmpty = false;
};

/// Reads XML 1.0 in UTF-8 tag by tag and checks that it is well-formed. A DOCTYPE and entities
/// other than the five of XML are refused, so that content stays what it looks like. Namespaces are
/// not resolved.
class XmlReader
{
public:
    explicit XmlReader(const QByteArray &content);

    XmlToken next();
    /// What is wrong, after a broken token.
    QString problem() const { return m_problem; }
    /// How many elements are open.
    int depth() const { return m_open.size(); }

private:
    bool startsWith(const char *text) const;
    bool skipSpace();
    std::optional<Span> readName();
    XmlToken broken(const QString &problem, int position);
    XmlToken readText();
    XmlToken readMarkup();
    /// Markup that ends at the first text after its opening.
    XmlToken readUntil(XmlToken::Kind kind, int opening, const char *text);
    XmlToken readInstruction();
    XmlToken readStart();
    QString readAttributes(XmlToken &token);
    QString readAttribute(XmlAttribute &attribute);
    QString nestingProblem(const XmlToken &token);
    XmlToken readEnd();
    XmlToken finished();

    const QByteArray &m_content;
    QString m_problem;
    QVector<Span> m_open;
    bool m_hasRoot = false;
    int m_position;
};

/// Characters as they stand, in a CDATA section; line ends are "\n".
QString plainXml(const QByteArray &bytes);
/// Text or an attribute's value without references; line ends are "\n". Nothing if it has an entity
/// or a character that XML lacks.
std::optional<QString> decodedXml(const QByteArray &text);
/// An attribute's value: as decodedXml(), tabs and line ends are spaces.
QString decodedXmlAttribute(const QByteArray &value);
QByteArray encodedXml(const QString &text);
/// For an attribute whose value stands in these quotes.
QByteArray encodedXmlAttribute(const QString &value, char quote);
bool isXmlName(const QString &name);
/// Where the name that starts at position ends: position itself if there is none. It may have a
/// prefix.
int xmlNameEnd(const QByteArray &content, int position);
bool isXmlCharacter(uint character);
/// True if all of its characters may stand in XML.
bool isXmlText(const QString &text);

} // namespace doctor
