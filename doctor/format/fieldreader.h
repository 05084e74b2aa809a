#pragma once

#include <QSet>

#include "doctor/format/jsondocument.h"
#include "doctor/format/localtext.h"

namespace doctor {

/// The closest of @p names to a mistyped one, as part of a sentence; empty if none is close.
QString suggestion(const QString &mistyped, const QStringList &names);

/// Reports members whose names are not among @p known.
void reportUnknown(const JsonNode &object, const QStringList &known, const QString &what);

/// Reports anything but an object.
bool isObjectOrReport(const JsonNode &node, const QString &what);

/// A text of at most @p longest characters; empty, and reported, if it is none.
QString readText(const JsonNode &node, int longest);

/// "text" or {"en": "text", …}. Placeholders must be among @p values.
LocalText readLocalText(const JsonNode &node, const QSet<QString> &values);

/// Reports braces that cannot be read, and names in them that no probe sees.
void checkPlaceholders(const JsonNode &node, const QString &text, const QSet<QString> &values);

/// Lower-case words joined by dots and hyphens; empty, and reported, if it is none.
QString readId(const JsonNode &object);

} // namespace doctor
