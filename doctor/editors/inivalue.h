#pragma once

#include <QByteArray>
#include <QString>

namespace doctor {

/// The text of a value as QSettings reads it, also where the file has UTF-8. A list, whose commas
/// stand outside quotes, and a Qt type such as "@Size(1 2)" are given as they are written.
QString decodedIniValue(const QByteArray &value);
/// What QSettings reads as the text. Text with commas stays a list, and other letters than ASCII
/// stay UTF-8, if the value before was so.
QByteArray encodedIniValue(const QString &text, const QByteArray &before);
/// The name of a section or key without its %-escapes.
QString decodedIniName(const QByteArray &name);
QByteArray encodedIniName(const QString &name);

} // namespace doctor
