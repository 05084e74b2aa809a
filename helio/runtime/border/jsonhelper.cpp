#include "host/jsonhelper.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>
#include <string>

namespace {

std::string toStdString(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    return std::string(utf8.constData(), static_cast<std::size_t>(utf8.size()));
}

QString fromJsonString(const Json::Value &value)
{
    const char *begin = nullptr;
    const char *end = nullptr;
    value.getString(&begin, &end);
    return QString::fromUtf8(begin, static_cast<int>(end - begin));
}

Json::Value fromNumber(double number)
{
    // JSON cannot express infinity and NaN.
    if (!std::isfinite(number))
        return Json::Value();
    constexpr double largestExactInteger = 9007199254740992.0;
    if (std::abs(number) <= largestExactInteger && std::trunc(number) == number)
        return Json::Value(static_cast<Json::Int64>(number));
    return Json::Value(number);
}

QJsonObject toQJsonObject(const Json::Value &value)
{
    QJsonObject object;
    for (auto member = value.begin(); member != value.end(); ++member) {
        const std::string name = member.name();
        object.insert(QString::fromUtf8(name.data(), static_cast<int>(name.size())),
                      JsonHelper::convertJsonCppToQJson(*member));
    }
    return object;
}

} // namespace

Json::Value JsonHelper::convertQJsonToJsonCpp(const QJsonObject &object)
{
    Json::Value converted(Json::objectValue);
    for (auto member = object.constBegin(); member != object.constEnd(); ++member)
        converted[toStdString(member.key())] = convertQJsonToJsonCpp(member.value());
    return converted;
}

Json::Value JsonHelper::convertQJsonToJsonCpp(const QJsonArray &array)
{
    Json::Value converted(Json::arrayValue);
    for (const QJsonValue &element : array)
        converted.append(convertQJsonToJsonCpp(element));
    return converted;
}

Json::Value JsonHelper::convertQJsonToJsonCpp(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return Json::Value(value.toBool());
    case QJsonValue::Double:
        return fromNumber(value.toDouble());
    case QJsonValue::String:
        return Json::Value(toStdString(value.toString()));
    case QJsonValue::Array:
        return convertQJsonToJsonCpp(value.toArray());
    case QJsonValue::Object:
        return convertQJsonToJsonCpp(value.toObject());
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return Json::Value();
}

QJsonValue JsonHelper::convertJsonCppToQJson(const Json::Value &value)
{
    switch (value.type()) {
    case Json::booleanValue:
        return value.asBool();
    case Json::intValue:
        return static_cast<qint64>(value.asInt64());
    case Json::uintValue:
    case Json::realValue:
        return value.asDouble();
    case Json::stringValue:
        return fromJsonString(value);
    case Json::objectValue:
        return toQJsonObject(value);
    case Json::arrayValue: {
        QJsonArray array;
        for (const Json::Value &element : value)
            array.append(convertJsonCppToQJson(element));
        return array;
    }
    case Json::nullValue:
        break;
    }
    return QJsonValue();
}
