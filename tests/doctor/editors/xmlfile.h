#pragma once

#include "tests/doctor/editors/generated.h"

#include <QStringList>
#include <QXmlStreamReader>

#include <optional>

namespace generated {

/// What a document says, by path as XmlEditor takes it: "root/name[2]" gives the text,
/// "…/@attribute" the attribute. Blank text in elements with others in them is left out.
using XmlValues = QMap<QStringList, QString>;

/// Read by Qt; nothing if it is not well-formed.
inline std::optional<XmlValues> xmlByQt(const QByteArray &content)
{
    struct Open
    {
        QMap<QString, int> children;
        QString text;
    };
    XmlValues values;
    QXmlStreamReader reader(content);
    reader.setNamespaceProcessing(false);
    QVector<Open> open(1);
    QStringList path;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            const QString name = reader.qualifiedName().toString();
            const int index = ++open.last().children[name];
            path.append(QStringLiteral("%1[%2]").arg(name).arg(index));
            open.append(Open());
            const QXmlStreamAttributes attributes = reader.attributes();
            for (const QXmlStreamAttribute &attribute : attributes)
                values.insert(
                    path + QStringList(QLatin1Char('@') + attribute.qualifiedName().toString()),
                    attribute.value().toString());
        } else if (reader.isCharacters()) {
            open.last().text += reader.text();
        } else if (reader.isEndElement()) {
            const Open element = open.takeLast();
            const bool isBlank = !element.children.isEmpty() && element.text.trimmed().isEmpty();
            values.insert(path, isBlank ? QString() : element.text);
            path.removeLast();
        }
    }
    if (reader.hasError())
        return std::nullopt;
    return values;
}

/// A tree of elements; what stands in it is chosen by kinds of text.
inline QByteArray randomElement(Chooser &choose, int depth)
{
    const QByteArray name = choose.of({"a", "b", "c", "x:d", "\xe4\xb8\xad"});
    const QByteArray space = choose.of({" ", "  ", "\n  "});
    QByteArray start = '<' + name;
    if (choose.percent(40))
        start += space + choose.of({"k=\"1\"", "k='\"'", "k=\"&lt;\t&#10;'\"", "k = ''"});
    if (choose.percent(30))
        start += space + choose.of({"x:l=\"\xc3\xa9\"", "l='&amp;&quot;&apos;'"});
    if (choose.percent(20))
        return start + choose.of({"/>", " />"});
    start += choose.of({">", ">", " >"});
    QByteArray inside;
    if (depth == 0 || choose.percent(30)) {
        for (int count = choose.below(3); count > 0; --count)
            inside += choose.of({"text", "a &amp; b", "<![CDATA[<&\r\n]]>", " ", "&#x4e2d;", "\r\n",
                                 "<!-- c -->", "<?p i?>", "<![CDATA[]]>", "\xe4\xb8\xad"});
    } else {
        for (int count = choose.below(4); count > 0; --count)
            inside += choose.of({"", "\n  ", "\r\n", "<!-- <a> -->", "\t"}) +
                      randomElement(choose, depth - 1);
        inside += choose.of({"", "\n"});
    }
    return start + inside + "</" + name + choose.of({">", ">", " >"});
}

inline QByteArray randomXml(Chooser &choose)
{
    const QByteArray declaration =
        choose.of({"", "<?xml version=\"1.0\"?>",
                   "<?xml version='1.0' encoding='utf-8' standalone='yes' ?>\n"});
    return choose.of({"", "", "\xef\xbb\xbf"}) + declaration + choose.of({"", "\n<!-- top -->\n"}) +
           randomElement(choose, 4) + choose.of({"", "\n", "<!-- end -->"});
}

} // namespace generated
