#pragma once

#include "tests/doctor/editors/generated.h"

#include <QMap>
#include <QStringList>
#include <QXmlStreamReader>

#include <optional>

namespace generated {

inline constexpr char xcuStart[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                   "<oor:items xmlns:oor=\"http://openoffice.org/2001/registry\" "
                                   "xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" "
                                   "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n";
inline constexpr char xcuEnd[] = "</oor:items>";

inline constexpr char registryNamespace[] = "http://openoffice.org/2001/registry";

inline QByteArray xcu(const QByteArray &items)
{
    return xcuStart + items + xcuEnd;
}

/// LibreOffice's settings by path and name, as one item after the other changes them.
class Registry
{
public:
    static std::optional<QMap<QStringList, QString>> read(const QByteArray &content)
    {
        QXmlStreamReader xml(content);
        Registry registry;
        if (!xml.readNextStartElement() || xml.name() != QLatin1String("items"))
            return std::nullopt;
        while (xml.readNextStartElement())
            registry.readNode(xml, attribute(xml, "path"));
        if (xml.hasError())
            return std::nullopt;
        return registry.m_values;
    }

private:
    static QString attribute(const QXmlStreamReader &xml, const char *name)
    {
        return xml.attributes()
            .value(QLatin1String(registryNamespace), QLatin1String(name))
            .toString();
    }

    void readNode(QXmlStreamReader &xml, const QString &path)
    {
        const QString operation = attribute(xml, "op");
        if (operation == QLatin1String("replace") || operation == QLatin1String("remove")) {
            for (auto value = m_values.begin(); value != m_values.end();) {
                const QString place = value.key().first() + QLatin1Char('/');
                value = place.startsWith(path + QLatin1Char('/')) ? m_values.erase(value)
                                                                  : std::next(value);
            }
        }
        while (xml.readNextStartElement()) {
            const QString name = attribute(xml, "name");
            if (xml.name() == QLatin1String("node"))
                readNode(xml, path + QLatin1Char('/') + name);
            else
                readProperty(xml, {path, name});
        }
    }

    void readProperty(QXmlStreamReader &xml, const QStringList &key)
    {
        if (attribute(xml, "op") == QLatin1String("remove"))
            m_values.remove(key);
        while (xml.readNextStartElement()) {
            QString text;
            const bool isPlain = !xml.attributes().hasAttribute(QStringLiteral("xml:lang"));
            while (xml.readNext() != QXmlStreamReader::EndElement && !xml.hasError()) {
                if (xml.isCharacters())
                    text += xml.text();
                if (!xml.isStartElement())
                    continue;
                text += QChar(attribute(xml, "scalar").toUShort());
                xml.skipCurrentElement();
            }
            if (isPlain)
                m_values.insert(key, text);
        }
    }

    QMap<QStringList, QString> m_values;
};

inline const QByteArrayList xcuPaths{"/org.openoffice.Office.Common/Save",
                                     "/org.openoffice.Office.Common/Save/Document",
                                     "/org.openoffice.Setup/L10N", "/org.openoffice.A/Set/a&amp;b"};
inline const QByteArrayList xcuNames{"AutoSave", "Name", "\xe4\xb8\xad", "x&quot;"};

inline QByteArray randomProperty(Chooser &choose)
{
    const QByteArray name = choose.of(xcuNames);
    const QByteArray values = choose.of(
        {"<value>true</value>", "<value>a &lt; b</value>", "<value/>", "<value xsi:nil=\"true\"/>",
         "<value>x<unicode oor:scalar=\"1\"/>y</value>", "<value> 1\r\n2 </value>",
         "<value oor:separator=\";\">a;b</value>", "<value><![CDATA[<]]></value >", "",
         "<value xml:lang=\"de\">Wert</value><value>plain</value>"});
    const QByteArray operation =
        choose.of({"oor:op=\"fuse\"", "oor:op='replace'", "oor:op=\"remove\""});
    const bool isRemoved = operation.contains("remove");
    return "<prop oor:name=\"" + name + "\" " + operation + '>' +
           (isRemoved ? QByteArray() : values) + "</prop>";
}

inline QByteArray randomItem(Chooser &choose)
{
    QByteArray inside = randomProperty(choose);
    if (choose.percent(20))
        inside += choose.of({"\n ", "", "<!-- c -->"}) + randomProperty(choose);
    if (choose.percent(20))
        inside = "<node oor:name=\"Document\" oor:op=\"" +
                 choose.of({"replace", "fuse", "remove"}) + "\">" + inside + "</node>" +
                 choose.of({"", randomProperty(choose)});
    return "<item oor:path=\"" + choose.of(xcuPaths) + "\">" + inside + "</item>" +
           choose.of({"\n", "\n", "", "\r\n  "});
}

inline QString decoded(QByteArray text)
{
    return QString::fromUtf8(text.replace("&amp;", "&").replace("&quot;", "\""));
}

} // namespace generated
