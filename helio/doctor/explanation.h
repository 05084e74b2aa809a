#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include "helio/doctor/whyrepair.h"

namespace helio {

/// The answer to a question "why", with what repairs it.
struct Explanation
{
    /// As one line of docs/doctor.schema.json.
    QJsonObject line;
    /// Nothing where nothing is to be repaired.
    std::optional<WhyRepair> repair;
};

/// What opens files with this suffix, such as "docx". The repair has the proposed entry open them.
Explanation explainedOpening(const doctor::Machine &machine, const QString &suffix);
/// What opens each kind of the suite's documents: lines of the schema.
QJsonArray allOpenings(const doctor::Machine &machine);
/// Whether this program gets @p access to a path. The repair opens what blocks, as far as the user
/// may; behind it something else may block.
Explanation explainedAccess(const QString &path, doctor::Access access);
/// Why input methods work in the session, or not.
Explanation explainedInput(const doctor::Machine &machine);

} // namespace helio
