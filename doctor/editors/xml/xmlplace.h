#pragma once

#include "doctor/editors/xml/xmlreader.h"

namespace doctor {

/// Text or a CDATA section of an element.
struct XmlPiece
{
    Span span;
    std::optional<Span> data;
};

struct XmlElement
{
    XmlToken start;
    /// Empty, behind the start, if the element has no end tag.
    Span endTag;
    /// Blank text before the element, and before its last child.
    Span gap;
    Span childGap;
    std::optional<Span> lastChild;
    /// Text that is not blank stands directly in it.
    bool hasText = false;
    /// Only of the element that the whole path names.
    QVector<XmlPiece> pieces;
    /// How many children fit the path's next step but for the index.
    int fitting = 0;

    Span whole() const { return {start.span.begin, endTag.end}; }
    /// Where another attribute can be written.
    int attributesEnd() const;
};

/// A part of a path: "name", "name[2]" or "name[@attribute=value]".
struct XmlStep
{
    QString name;
    int index = 1;
    QString attribute;
    QString value;
};

struct XmlPlace
{
    QString problem;
    /// How many steps lead to an element, and the last of these.
    int parts = 0;
    XmlElement element;
};

std::optional<XmlStep> xmlStep(const QString &part);
/// Of the elements that fit a step, the first counts.
XmlPlace placeInXml(const QByteArray &content, const QVector<XmlStep> &steps);
/// The value of an attribute if the element has it.
std::optional<QString> attributeIn(const QByteArray &content, const XmlToken &start,
                                   const QString &name);
/// Adds the text of an element as a parent's last child, indented as its last child.
Edit withChild(const QByteArray &content, const XmlElement &parent, const QByteArray &text);
/// Puts text into an element that has no end tag.
Edit withContent(const QByteArray &content, const XmlElement &element, const QByteArray &text);
/// An element's span, with the line end and indentation before it.
Span removable(const QByteArray &content, Span element, Span gap);

} // namespace doctor
