#pragma once

#include <QJsonValue>

#include <json/value.h>

#include "host/khelioexport.h"

class QJsonArray;
class QJsonObject;

/// Conversion between Qt's JSON classes and the JSON type of a call's answer.
namespace JsonHelper {

HELIO_EXPORT Json::Value convertQJsonToJsonCpp(const QJsonValue &value);
HELIO_EXPORT Json::Value convertQJsonToJsonCpp(const QJsonObject &object);
HELIO_EXPORT Json::Value convertQJsonToJsonCpp(const QJsonArray &array);

HELIO_EXPORT QJsonValue convertJsonCppToQJson(const Json::Value &value);

} // namespace JsonHelper
