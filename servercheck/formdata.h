#pragma once

#include <QByteArray>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVector>

namespace OfficeAssiant {

/// The pairs of a text of the form "name:value;name:value", in its order. A part that is not
/// exactly a name and a value is left out, so no value can hold a colon.
QVector<QPair<QString, QString>> parseNameValueList(const QString &list);

/// The fields of a multipart request: those of the list, the last of each name, and a "fileName",
/// which every save function has.
QMap<QString, QString> formFields(const QString &list);

/// The value of a multipart request's Content-Type header.
QString formDataContentType();

/// The body of a multipart request: each field in the order of the names, then @p fileContent
/// under the name of the field "fileName". Names go as they are, quotes included.
QByteArray formDataBody(const QMap<QString, QString> &fields, const QByteArray &fileContent);

} // namespace OfficeAssiant
