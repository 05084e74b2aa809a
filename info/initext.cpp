#include "info/initext.h"

#include <QTextCodec>

#include <algorithm>

namespace OfficeAssiant {

QString decodedIniText(const QVariant &value)
{
    QString text = value.toString().section(QChar(QChar::Null), 0, 0);
    const bool isRawBytes =
        std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() <= 0xff; });
    if (!isRawBytes)
        return text;
    const QByteArray bytes = text.toLatin1();
    QTextCodec::ConverterState state;
    const QString decoded =
        QTextCodec::codecForLocale()->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0 ? decoded : text;
}

} // namespace OfficeAssiant
