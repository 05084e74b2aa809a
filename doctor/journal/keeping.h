#pragma once

#include <QVector>

#include "doctor/journal/journallimits.h"
#include "doctor/journal/record.h"

namespace doctor {

class Store;

/// All records that can be read, the oldest first.
QVector<Record> readAll(const Store &store);

/// Removes what is older than the journal keeps, or more, but never @p newest and nothing that has
/// not ended.
void removeOld(Store &store, int newest, const JournalLimits &limits);

} // namespace doctor
