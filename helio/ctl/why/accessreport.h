#pragma once

#include <QJsonObject>
#include <QString>

#include "doctor/why/denied/denied.h"

namespace ctl {

/// "read", "write" or "run".
QString nameOf(doctor::Access access);

/// Lines for people: the verdict, the components on the way, the reason and the remedy.
QString accessText(const QString &path, doctor::Access access, const doctor::Denial &denial);

/// The same as one line of docs/doctor.schema.json.
QJsonObject accessObject(const QString &path, doctor::Access access, const doctor::Denial &denial);

} // namespace ctl
