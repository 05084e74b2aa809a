#include "info/initext.h"

#include <algorithm>

#include "qtversion/qtversion.h"

namespace OfficeAssiant {

namespace {

QString textUpToNul(const QVariant &value)
{
    return value.toString().section(QChar(QChar::Null), 0, 0);
}

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
    const QString text = textUpToNul(value);
    if (!isRawBytes(text))
        return text;
    return qtversion::decodedLocally(text.toLatin1()).value_or(text);
}

} // namespace OfficeAssiant
