#pragma once

#include <QString>

#include "doctor/doctor.h"
#include "doctor/journal/journal.h"
#include "helio/doctor/verifiedrepair.h"

namespace helio {

/// "write", "create" and so on, as in the JSON lines.
QString nameOf(doctor::Change::Kind kind);
/// "ok", "finding", "failed" or "skipped".
QString nameOf(doctor::CheckResult::Outcome outcome);
/// "repaired", "unchanged", "refused", "failed" or "planned".
QString nameOf(RepairOutcome::Result result);
/// "begun", "applied", "undone", "taken-back" or "damaged".
QString nameOf(doctor::JournalEntry::State state);

/// The content's change as a diff; empty for changes without content.
QString diffOf(const doctor::Change &change);
/// The command as a line for sh.
QString commandLineOf(const doctor::Change &change);
/// Without the characters that a terminal obeys, which text of files and check files may hold.
QString visible(const QString &text);

} // namespace helio
