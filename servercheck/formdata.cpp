#include "servercheck/formdata.h"

#include <QStringList>

namespace OfficeAssiant {

namespace {

const QChar partSeparator = QLatin1Char(';');
const QChar nameSeparator = QLatin1Char(':');
const QString fileNameField = QStringLiteral("fileName");
const QString defaultFileName = QStringLiteral("test.txt");
const QByteArray boundary =
    QByteArrayLiteral("---------------------------1456992029567962774924545351");
const QByteArray lineEnd = QByteArrayLiteral("\r\n");
const QByteArray boundaryLine = "--" + boundary + lineEnd;
const QByteArray closingLine = "--" + boundary + "--" + lineEnd;
const QString fieldDisposition = QStringLiteral("Content-Disposition: form-data; name=\"%1\"");
const QString fileDisposition =
    QStringLiteral("Content-Disposition: form-data; name=\"file\"; filename=\"%1\"");
const QByteArray fileType = QByteArrayLiteral("Content-Type: application/octet-stream");

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
    if (!fields.contains(fileNameField))
        fields.insert(fileNameField, defaultFileName);
    return fields;
}

QString formDataContentType()
{
    return QStringLiteral("multipart/form-data; boundary=") + QString::fromLatin1(boundary);
}

QByteArray formDataBody(const QMap<QString, QString> &fields, const QByteArray &fileContent)
{
    QByteArray body;
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        body += boundaryLine;
        body += fieldDisposition.arg(field.key()).toUtf8() + lineEnd + lineEnd;
        body += field.value().toUtf8() + lineEnd;
    }
    body += boundaryLine;
    body += fileDisposition.arg(fields.value(fileNameField)).toUtf8() + lineEnd;
    body += fileType + lineEnd + lineEnd;
    body += fileContent + lineEnd;
    body += closingLine;
    return body;
}

} // namespace OfficeAssiant
