#include "info/initext.h"

#include <QTextCodec>

#include <algorithm>

namespace OfficeAssiant {

namespace {

QString textUpToNul(const QVariant &value)
{
    return value.toString().section(QChar(QChar::Null), 0, 0);
}

/// Without a codec QSettings turns every raw byte into a character.
bool isRawBytes(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() <= 0xff; });
}

} // namespace

QString localIniText(const QVariant &value)
{
    const QString text = textUpToNul(value);
    return isRawBytes(text) ? QString::fromLocal8Bit(text.toLatin1()) : text;
}

QString readableIniText(const QVariant &value)
{
    QString text = textUpToNul(value);
    if (!isRawBytes(text))
        return text;
    const QByteArray bytes = text.toLatin1();
    QTextCodec::ConverterState state;
    const QString decoded =
        QTextCodec::codecForLocale()->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0 ? decoded : text;
}

} // namespace OfficeAssiant
