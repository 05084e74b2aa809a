#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include "doctor/doctor.h"
#include "doctor/journal/journal.h"

namespace helio {

struct RepairOutcome;

/// What the doctor says as JSON objects; docs/doctor.schema.json describes them.
QJsonObject checkLine(const doctor::CheckResult &result);
QJsonObject findingLine(const doctor::Finding &finding);
QJsonObject listedLine(const doctor::CheckDefinition &check, const QString &locale);
QJsonObject mistakeLine(const doctor::FileProblem &problem);
QJsonObject changeLine(const QString &repair, const doctor::Change &change);
QJsonArray changeLines(const QString &repair, const QVector<doctor::Change> &changes);
QJsonObject repairLine(const RepairOutcome &outcome);
QJsonObject entryLine(const doctor::JournalEntry &entry);
QJsonObject undoneLine(int journal, const doctor::JournalResult &result);
QJsonObject noteLine(const QString &text);
QJsonObject summaryLine(int checks, int findings, int failed);

} // namespace helio
