#include "servercheck/formdata.h"

#include <QStringList>

namespace OfficeAssiant {

namespace {

constexpr QLatin1Char partSeparator(';');
constexpr QLatin1Char nameSeparator(':');
constexpr char fileNameField[] = "fileName";
constexpr char defaultFileName[] = "test.txt";
constexpr char boundary[] = "---------------------------1456992029567962774924545351";
constexpr char lineEnd[] = "\r\n";
constexpr char fieldDisposition[] = "Content-Disposition: form-data; name=\"%1\"";
constexpr char fileDisposition[] = "Content-Disposition: form-data; name=\"file\"; filename=\"%1\"";
constexpr char fileType[] = "Content-Type: application/octet-stream";

/// A name without line ends, which would begin another header; written as web browsers do.
QString onOneLine(QString name)
{
    return name.replace(QLatin1Char('\r'), QLatin1String("%0D"))
        .replace(QLatin1Char('\n'), QLatin1String("%0A"));
}

} // namespace

QVector<QPair<QString, QString>> parseNameValueList(const QString &list)
{
    QVector<QPair<QString, QString>> pairs;
    const QStringList parts = list.split(partSeparator);
    for (const QString &part : parts) {
        const QStringList pieces = part.split(nameSeparator);
        if (pieces.size() == 2)
            pairs.append({pieces.at(0), pieces.at(1)});
    }
    return pairs;
}

QMap<QString, QString> formFields(const QString &list)
{
    QMap<QString, QString> fields;
    const auto pairs = parseNameValueList(list);
    for (const auto &pair : pairs)
        fields.insert(pair.first, pair.second);
    if (!fields.contains(QLatin1String(fileNameField)))
        fields.insert(QLatin1String(fileNameField), QLatin1String(defaultFileName));
    return fields;
}

QString formDataContentType()
{
    return QLatin1String("multipart/form-data; boundary=") + QLatin1String(boundary);
}

QByteArray formDataBody(const QMap<QString, QString> &fields, const QByteArray &fileContent)
{
    const QByteArray boundaryLine = QByteArray("--") + boundary + lineEnd;
    QByteArray body;
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        body += boundaryLine;
        body += QLatin1String(fieldDisposition).arg(onOneLine(field.key())).toUtf8() + lineEnd +
                lineEnd;
        body += field.value().toUtf8() + lineEnd;
    }
    body += boundaryLine;
    const QString fileName = fields.value(QLatin1String(fileNameField));
    body += QLatin1String(fileDisposition).arg(onOneLine(fileName)).toUtf8() + lineEnd;
    body += QByteArray(fileType) + lineEnd + lineEnd;
    body += fileContent + lineEnd;
    body += QByteArray("--") + boundary + "--" + lineEnd;
    return body;
}

} // namespace OfficeAssiant
