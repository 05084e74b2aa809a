#pragma once

#include <QJsonObject>
#include <QString>

#include "doctor/why/denied/denied.h"

namespace helio {

/// As "r-x".
QString rightsLetters(unsigned rights);
/// In octal, as "0644".
QString modeOf(const doctor::Component &component);
/// The owner's name, or number.
QString ownerOf(const doctor::Component &component);
/// Whether the access is granted, in one sentence.
QString accessVerdict(const QString &path, doctor::Access access, doctor::Denial::Verdict verdict);
/// Whether the user may apply the remedy.
bool isOwn(const doctor::Remedy &remedy);
/// For sh.
QString commandOf(const doctor::Remedy &remedy);

/// Whether an access is granted, and why not, as one line of docs/doctor.schema.json.
QJsonObject accessObject(const QString &path, doctor::Access access, const doctor::Denial &denial);

} // namespace helio
