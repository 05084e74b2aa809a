#pragma once

#include "tests/doctor/editors/generated.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace generated {

/// While it lives, leaks are not looked for: Qt's JSON types lose replaced members.
class LeaksOfQt
{
#ifdef __SANITIZE_ADDRESS__
    __lsan::ScopedDisabler m_disabler;
#endif
};

inline const QByteArrayList jsonNames{R"("a")",   R"("b")",           R"("\u0061")",
                                      R"("a b")", R"("\n\"")",        R"("")",
                                      R"("0")",   "\"\xe4\xb8\xad\"", R"("\ud83d\ude42")"};

inline QByteArray space(Chooser &choose)
{
    return choose.of({"", "", "", " ", "\n", "\r\n\t", "  "});
}

inline QByteArray randomScalar(Chooser &choose)
{
    return choose.of({"1", "-0.5e+3", "true", "false", "null", R"("")", R"("text")",
                      R"("\u00e9\\\/")", R"("{[,:]}")", "\"\xe4\xb8\xad\"", R"("12")"});
}

/// Names may stand twice only if that is said: Qt then loses memory.
inline QByteArray randomValue(Chooser &choose, int depth, bool hasTwins)
{
    const int kind = choose.below(depth > 0 ? 5 : 2);
    if (kind < 2)
        return randomScalar(choose);
    const bool isObject = kind < 4;
    QByteArrayList free = jsonNames;
    free.removeAll(choose.percent(50) ? jsonNames.at(0) : jsonNames.at(2));
    QByteArrayList members;
    for (int count = choose.below(5); count > 0 && !free.isEmpty(); --count) {
        const QByteArray name = choose.of(free);
        if (!hasTwins)
            free.removeAll(name);
        const QByteArray value = randomValue(choose, depth - 1, hasTwins);
        members.append(space(choose) +
                       (isObject ? name + space(choose) + ':' + space(choose) : QByteArray()) +
                       value + space(choose));
    }
    const QByteArray inside = members.isEmpty() ? space(choose) : members.join(',');
    return isObject ? '{' + inside + '}' : '[' + inside + ']';
}

inline QByteArray randomJson(Chooser &choose, bool hasTwins)
{
    QByteArray value;
    while (!value.startsWith('{') && !value.startsWith('['))
        value = randomValue(choose, 4, hasTwins);
    return choose.of({"", "", "\xef\xbb\xbf"}) + space(choose) + value +
           choose.of({"", "\n", "\r\n"});
}

/// The document that Qt reads, which takes no byte order mark.
inline QJsonValue jsonByQt(QByteArray content)
{
    if (content.startsWith("\xef\xbb\xbf"))
        content = content.mid(3);
    [[maybe_unused]] const LeaksOfQt ignored;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError)
        return QJsonValue::Undefined;
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}

inline QJsonValue valueAt(const QJsonValue &value, const QStringList &key)
{
    if (key.isEmpty())
        return value;
    if (value.isArray())
        return valueAt(value.toArray().at(key.first().toInt()), key.mid(1));
    return valueAt(value.toObject().value(key.first()), key.mid(1));
}

/// The value with another one at the key; an undefined one removes.
inline QJsonValue with(const QJsonValue &value, const QStringList &key,
                       const QJsonValue &replacement)
{
    [[maybe_unused]] const LeaksOfQt ignored;
    if (key.isEmpty())
        return replacement;
    if (!value.isArray()) {
        QJsonObject object = value.toObject();
        const QJsonValue member = with(object.value(key.first()), key.mid(1), replacement);
        object.insert(key.first(), member);
        return object;
    }
    QJsonArray array = value.toArray();
    const int index = key.first().toInt();
    const QJsonValue element = with(array.at(index), key.mid(1), replacement);
    if (element.isUndefined())
        array.removeAt(index);
    else if (index < array.size())
        array.replace(index, element);
    else
        array.append(element);
    return array;
}

} // namespace generated
