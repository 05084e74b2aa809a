#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace doctor {

/// An entry of a key file, its value still with escapes.
struct KeyFileLine
{
    QByteArray group;
    QByteArray key;
    QByteArray value;
    int line = 0;
};

/// What GLib's GKeyFile keeps of a file: all entries, or nothing if a line is neither entry, group
/// nor comment.
struct KeyFile
{
    QVector<KeyFileLine> lines;
    QByteArray firstGroup;
    /// The line for which GLib refuses the file; 0 if it takes it.
    int brokenLine = 0;

    /// The value that counts, the last one; nothing if the key is missing or its value is no text.
    std::optional<QString> text(const char *group, const char *key) const;
};

KeyFile parseKeyFile(const QByteArray &content);

/// Nothing if it is not UTF-8.
std::optional<QString> decoded(const QByteArray &bytes);
/// A value without escapes; unknown ones stay. Nothing if it is not UTF-8.
std::optional<QString> textValue(const QByteArray &value);
/// A value with ";" between its parts; spaces count. Nothing if it has an unknown escape or is not
/// UTF-8.
std::optional<QStringList> listValue(const QByteArray &value);

} // namespace doctor
