#include "programs/replace/text/paragraph.h"

#include <QHash>

#include <optional>

namespace programs {

namespace {

/// Bytes of the UTF-8 character that begins with @p first; 0 if none does.
int utf8Length(unsigned char first)
{
    if (first < 0x80)
        return 1;
    if (first >= 0xf0)
        return first < 0xf5 ? 4 : 0;
    if (first >= 0xe0)
        return 3;
    return first >= 0xc2 ? 2 : 0;
}

/// What stands between "&" and ";".
QString entity(const QByteArray &name)
{
    static const QHash<QByteArray, QChar> known = {{"amp", QLatin1Char('&')},
                                                   {"lt", QLatin1Char('<')},
                                                   {"gt", QLatin1Char('>')},
                                                   {"quot", QLatin1Char('"')},
                                                   {"apos", QLatin1Char('\'')}};
    if (!name.startsWith('#'))
        return known.contains(name) ? QString(known.value(name)) : QString();
    bool isNumber = false;
    const bool isHexadecimal = name.startsWith("#x");
    const uint code = name.mid(isHexadecimal ? 2 : 1).toUInt(&isNumber, isHexadecimal ? 16 : 10);
    return isNumber && code > 0 && code <= QChar::LastValidCodePoint ? QString::fromUcs4(&code, 1)
                                                                     : QString();
}

bool isSpace(const QString &text)
{
    return text.size() == 1 && QStringLiteral(" \t\r\n").contains(text);
}

} // namespace

void Paragraph::addSeparator(int position)
{
    text += separator;
    places.append({position, position, 0});
}

bool Paragraph::add(const QByteArray &xml, int begin, int end, int element, bool collapses)
{
    constexpr int longestEntity = 12;
    while (begin < end) {
        int next = begin + utf8Length(static_cast<unsigned char>(xml.at(begin)));
        QString character;
        if (xml.at(begin) == '&') {
            next = xml.indexOf(';', begin) + 1;
            if (next == 0 || next > end || next - begin > longestEntity)
                return false;
            character = entity(xml.mid(begin + 1, next - begin - 2));
        } else if (next > begin && next <= end) {
            character = QString::fromUtf8(xml.constData() + begin, next - begin);
        }
        if (character.isEmpty() || character.contains(QChar::ReplacementCharacter))
            return false;
        if (isSpace(character) && collapses && xml.at(begin) != '&') {
            while (next < end && isSpace(QString(QLatin1Char(xml.at(next)))))
                ++next;
            character = QStringLiteral(" ");
        }
        for (int n = 0; n < character.size(); ++n)
            places.append({n == 0 ? begin : next, next, element});
        text += character;
        begin = next;
    }
    return true;
}

} // namespace programs
