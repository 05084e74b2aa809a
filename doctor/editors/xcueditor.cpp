#include "doctor/editors/xcueditor.h"

#include "doctor/editors/edits.h"
#include "doctor/editors/xml/xcuplace.h"
#include "doctor/editors/xml/xmlplace.h"

#include <algorithm>

#include "texts/texts.h"

namespace doctor {

namespace {

constexpr char rootName[] = "oor:items";

XcuPlace placeOf(const QByteArray &content, const QStringList &key)
{
    XcuPlace place;
    place.problem = inputProblem(content, key);
    if (place.problem.isEmpty() && (key.size() != 2 || !key.first().startsWith(QLatin1Char('/')) ||
                                    key.last().isEmpty() || !isXmlText(key.join(QString()))))
        place.problem = texts::tr("A key is a path such as “/org.openoffice.Office.Common/Save” "
                                  "and the name of a property.");
    return place.problem.isEmpty() ? placeInXcu(content, key.first(), key.last()) : place;
}

/// Characters that XML lacks are elements of their own.
QByteArray encodedValue(const QString &text)
{
    QByteArray result;
    int plain = 0;
    for (int i = 0; i < text.size(); ++i) {
        const ushort unit = text.at(i).unicode();
        if (text.at(i).isSurrogate() || isXmlCharacter(unit))
            continue;
        result += encodedXml(text.mid(plain, i - plain)) + "<unicode oor:scalar=\"" +
                  QByteArray::number(unit) + "\"/>";
        plain = i + 1;
    }
    return result + encodedXml(text.mid(plain));
}

EditedContent added(const QByteArray &content, const QStringList &key, const QByteArray &value)
{
    XmlStep root;
    root.name = QLatin1String(rootName);
    const XmlPlace place = placeInXml(content, {root});
    QByteArray item = "<item oor:path=\"" + encodedXmlAttribute(key.first(), '"') +
                      "\"><prop oor:name=\"" + encodedXmlAttribute(key.last(), '"') +
                      "\" oor:op=\"fuse\"><value>" + value + "</value></prop></item>";
    if (!place.element.lastChild)
        item += lineEndOf(content);
    return edited(content, {withChild(content, place.element, item)});
}

/// The attribute that says that a value is none, with the space before it.
QVector<Edit> withoutNil(const QByteArray &content, const XmlToken &value)
{
    for (const XmlAttribute &attribute : value.attributes) {
        if (bytesIn(content, attribute.name) == "xsi:nil") {
            Span span{attribute.name.begin, attribute.value.end + 1};
            while (isBlank(content.mid(span.begin - 1, 1)))
                --span.begin;
            return {{span, {}}};
        }
    }
    return {};
}

EditedContent replaced(const QByteArray &content, const XcuProperty &property,
                       const QByteArray &text)
{
    QVector<Edit> edits = withoutNil(content, property.value);
    if (property.value.isEmpty) {
        XmlElement element;
        element.start = property.value;
        edits.append(withContent(content, element, text));
    } else {
        edits.append(Edit{{property.value.span.end, property.endTag.begin}, text});
    }
    return edited(content, edits);
}

} // namespace

std::optional<FoundKey> XcuEditor::find(const QByteArray &content, const QStringList &key) const
{
    const XcuPlace place = placeOf(content, key);
    if (!place.problem.isEmpty() || !place.property)
        return std::nullopt;
    return FoundKey{place.property->text, lineAt(content, place.property->position)};
}

EditedContent XcuEditor::set(const QByteArray &content, const QStringList &key,
                             const QString &value) const
{
    const XcuPlace place = placeOf(content, key);
    if (!place.problem.isEmpty())
        return refused(place.problem);
    if (!hasUtf8(value) || value.contains(QChar::Null))
        return refused(
            texts::tr("The file cannot hold this text: it has a zero or half a character."));
    if (!place.property && place.hasLanguages)
        return refused(texts::tr("The property has a value for each language."));
    if (!place.property)
        return added(content, key, encodedValue(value));
    const XcuProperty &property = *place.property;
    if (property.hasOthers)
        return refused(atLine(content, property.position,
                              texts::tr("this value is a list or has comments in it.")));
    if (property.text == value && !property.text.isNull())
        return {content, {}};
    return replaced(content, property, encodedValue(value));
}

EditedContent XcuEditor::remove(const QByteArray &content, const QStringList &key) const
{
    const XcuPlace place = placeOf(content, key);
    if (!place.problem.isEmpty())
        return refused(place.problem);
    if (!place.property)
        return {content, {}};
    QVector<Edit> edits;
    for (const Span &span : place.removal)
        edits.append(Edit{span, {}});
    return edited(content, edits);
}

} // namespace doctor
