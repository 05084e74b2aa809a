#include "doctor/editors/xmleditor.h"

#include "doctor/editors/edits.h"
#include "doctor/editors/xml/xmlplace.h"

#include <algorithm>

#include "texts/texts.h"

namespace doctor {

namespace {

/// A key as steps to an element, and the attribute meant there, if any.
struct Target
{
    QString problem;
    QVector<XmlStep> steps;
    QString attribute;
};

Target targetOf(const QByteArray &content, const QStringList &key)
{
    Target target;
    target.problem = inputProblem(content, key);
    if (!target.problem.isEmpty())
        return target;
    QStringList parts = key;
    if (parts.size() > 1 && parts.last().startsWith(QLatin1Char('@')))
        target.attribute = parts.takeLast().mid(1);
    const bool isAttribute = parts.size() < key.size();
    if (isAttribute && !isXmlName(target.attribute))
        target.problem = texts::tr("“%1” is not the name of an attribute.").arg(key.last());
    for (const QString &part : qAsConst(parts)) {
        const auto step = xmlStep(part);
        if (!step)
            target.problem = texts::tr("“%1” is not the name of an element.").arg(part);
        target.steps.append(step.value_or(XmlStep()));
    }
    return target;
}

XmlPlace placeOf(const QByteArray &content, const Target &target)
{
    XmlPlace place;
    place.problem = target.problem;
    return place.problem.isEmpty() ? placeInXml(content, target.steps) : place;
}

bool isThere(const XmlPlace &place, const Target &target)
{
    return place.problem.isEmpty() && place.parts == target.steps.size();
}

/// The index of the attribute in the element; -1 if it lacks it.
int attributeIndex(const QByteArray &content, const XmlElement &element, const QString &name)
{
    const auto &attributes = element.start.attributes;
    const auto found =
        std::find_if(attributes.begin(), attributes.end(), [&](const XmlAttribute &attribute) {
            return utf8Text(bytesIn(content, attribute.name)) == name;
        });
    return found == attributes.end() ? -1 : static_cast<int>(found - attributes.begin());
}

QString textOf(const QByteArray &content, const XmlElement &element)
{
    QString text;
    for (const XmlPiece &piece : element.pieces) {
        if (piece.data)
            text += plainXml(bytesIn(content, *piece.data));
        else
            text += decodedXml(bytesIn(content, piece.span)).value_or(QString());
    }
    return text;
}

QByteArray attributeText(const QString &name, const QString &value)
{
    return ' ' + name.toUtf8() + "=\"" + encodedXmlAttribute(value, '"') + '"';
}

/// The elements from a step on, one in the other, with the value in or at the last.
QByteArray elements(const Target &target, int first, const QString &value)
{
    QByteArray start;
    QByteArray end;
    for (int i = first; i < target.steps.size(); ++i) {
        const XmlStep &step = target.steps.at(i);
        start += '<' + step.name.toUtf8();
        if (!step.attribute.isEmpty())
            start += attributeText(step.attribute, step.value);
        const bool isLast = i + 1 == target.steps.size();
        if (isLast && !target.attribute.isEmpty())
            return start + attributeText(target.attribute, value) + "/>" + end;
        start += '>';
        end.prepend("</" + step.name.toUtf8() + '>');
    }
    return start + encodedXml(value) + end;
}

EditedContent added(const QByteArray &content, const Target &target, const XmlPlace &place,
                    const QString &value)
{
    if (place.parts == 0)
        return refused(texts::tr("The root element is not the one that the key names."));
    for (int i = place.parts; i < target.steps.size(); ++i) {
        const XmlStep &step = target.steps.at(i);
        const int before = i == place.parts ? place.element.fitting : 0;
        if (step.index != before + 1)
            return refused(texts::tr("There are too few “%1” to add that one.").arg(step.name));
        if (!isXmlText(step.value))
            return refused(texts::tr("The key has characters that XML lacks."));
    }
    if (target.steps.last().attribute == target.attribute && !target.attribute.isEmpty())
        return refused(texts::tr("The key names an attribute with two values."));
    if (place.element.hasText)
        return refused(atLine(content, place.element.start.span.begin,
                              texts::tr("this element has text and gets no others in it.")));
    return edited(content,
                  {withChild(content, place.element, elements(target, place.parts, value))});
}

EditedContent withAttribute(const QByteArray &content, const XmlElement &element,
                            const QString &name, const QString &value)
{
    const int index = attributeIndex(content, element, name);
    if (index < 0) {
        const int end = element.attributesEnd();
        return edited(content, {{{end, end}, attributeText(name, value)}});
    }
    const Span span = element.start.attributes.at(index).value;
    return edited(content, {{span, encodedXmlAttribute(value, content.at(span.begin - 1))}});
}

EditedContent withText(const QByteArray &content, const XmlElement &element, const QString &value)
{
    const QByteArray text = encodedXml(value);
    if (element.start.isEmpty)
        return edited(content, {withContent(content, element, text)});
    QVector<Edit> edits;
    for (const XmlPiece &piece : element.pieces)
        edits.append(Edit{piece.span, edits.isEmpty() ? text : QByteArray()});
    if (edits.isEmpty())
        edits.append(Edit{{element.start.span.end, element.start.span.end}, text});
    return edited(content, edits);
}

Span withSpaceBefore(const QByteArray &content, Span span)
{
    while (isBlank(content.mid(span.begin - 1, 1)))
        --span.begin;
    return span;
}

} // namespace

std::optional<FoundKey> XmlEditor::find(const QByteArray &content, const QStringList &key) const
{
    const Target target = targetOf(content, key);
    const XmlPlace place = placeOf(content, target);
    if (!isThere(place, target))
        return std::nullopt;
    const XmlElement &element = place.element;
    if (target.attribute.isEmpty())
        return FoundKey{textOf(content, element), lineAt(content, element.start.span.begin)};
    const int index = attributeIndex(content, element, target.attribute);
    if (index < 0)
        return std::nullopt;
    const XmlAttribute &attribute = element.start.attributes.at(index);
    return FoundKey{decodedXmlAttribute(bytesIn(content, attribute.value)),
                    lineAt(content, attribute.name.begin)};
}

EditedContent XmlEditor::set(const QByteArray &content, const QStringList &key,
                             const QString &value) const
{
    const Target target = targetOf(content, key);
    const XmlPlace place = placeOf(content, target);
    if (!place.problem.isEmpty())
        return refused(place.problem);
    if (!isXmlText(value))
        return refused(texts::tr("XML cannot hold this text: it has characters that XML lacks."));
    const auto before = find(content, key);
    if (before && before->value == value)
        return {content, {}};
    if (!isThere(place, target))
        return added(content, target, place, value);
    if (!target.attribute.isEmpty())
        return withAttribute(content, place.element, target.attribute, value);
    if (place.element.lastChild)
        return refused(atLine(content, place.element.start.span.begin,
                              texts::tr("this element has others in it, not only text.")));
    return withText(content, place.element, value);
}

EditedContent XmlEditor::remove(const QByteArray &content, const QStringList &key) const
{
    const Target target = targetOf(content, key);
    const XmlPlace place = placeOf(content, target);
    if (!place.problem.isEmpty())
        return refused(place.problem);
    if (!isThere(place, target))
        return {content, {}};
    const XmlElement &element = place.element;
    if (!target.attribute.isEmpty()) {
        const int index = attributeIndex(content, element, target.attribute);
        if (index < 0)
            return {content, {}};
        const XmlAttribute &attribute = element.start.attributes.at(index);
        const Span span{attribute.name.begin, attribute.value.end + 1};
        return edited(content, {{withSpaceBefore(content, span), {}}});
    }
    if (target.steps.size() == 1)
        return refused(texts::tr("The root element cannot be removed."));
    return edited(content, {{removable(content, element.whole(), element.gap), {}}});
}

} // namespace doctor
