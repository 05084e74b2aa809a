#pragma once

#include <QByteArray>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVector>

namespace OfficeAssiant {

/// Parses "name:value;name:value" into pairs, in order. Skips parts that are not exactly a name and
/// a value, so a value cannot contain a colon.
QVector<QPair<QString, QString>> parseNameValueList(const QString &list);

/// The fields of a multipart request: those of the list, the last one of each name, and a default
/// "fileName", which every save function has.
QMap<QString, QString> formFields(const QString &list);

/// The value of a multipart request's Content-Type header.
QString formDataContentType();

/// The body of a multipart request: each field in the order of the names, then @p fileContent
/// under the name of the field "fileName". Of the names, only line ends are escaped, not even
/// quotes.
QByteArray formDataBody(const QMap<QString, QString> &fields, const QByteArray &fileContent);

} // namespace OfficeAssiant
