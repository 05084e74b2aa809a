#pragma once

#include <QJsonObject>
#include <QString>

#include "doctor/why/open/open.h"

namespace helio {

/// What becomes of an entry that a list names; for people.
QString fateText(const doctor::Statement &statement, const doctor::OpenQuestion &question);

/// What opens a file or a type, as one line of docs/doctor.schema.json.
/// @p subject is what was asked for.
QJsonObject openObject(const QString &subject, const doctor::OpenQuestion &question,
                       const doctor::Opening &opening);
QJsonObject suffixObject(const doctor::SuffixOpening &row);

} // namespace helio
