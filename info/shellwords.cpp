#include "info/shellwords.h"

#include <QRegularExpression>

namespace OfficeAssiant {

namespace {

/// ASCII only: in some encodings a byte of another character is a special one of the shell.
constexpr char plainWord[] = "\\A[A-Za-z0-9_./,:@%+-]+\\z";
constexpr char blanks[] = "[ \t\n]+";
constexpr QLatin1Char quote('\'');
constexpr char quotedQuote[] = "'\\''";

} // namespace

QString shellWord(const QString &word)
{
    if (QRegularExpression(QLatin1String(plainWord)).match(word).hasMatch())
        return word;
    return quote + QString(word).replace(quote, QLatin1String(quotedQuote)) + quote;
}

QStringList shellWords(const QString &text)
{
    QStringList words = text.split(QRegularExpression(QLatin1String(blanks)), Qt::SkipEmptyParts);
    for (QString &word : words)
        word = shellWord(word);
    return words;
}

} // namespace OfficeAssiant
