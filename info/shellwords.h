#pragma once

#include <QString>
#include <QStringList>

namespace OfficeAssiant {

/// @p word as the shell reads it back, always as one word: unchanged if it is plain, else in
/// quotes. Nothing in it is run or expanded.
QString shellWord(const QString &word);

/// The words into which the shell splits an unquoted @p text, each of them quoted where needed.
QStringList shellWords(const QString &text);

} // namespace OfficeAssiant
