#pragma once

#include <chrono>

#include "doctor/journal/store.h"
#include "doctor/model/plan.h"

namespace doctor {

/// Does an action with the journal around it: the intention first, then the steps, then the
/// processes that are to end, then the mark that all is done. If anything fails, all is taken back;
/// @p notes says what could not be. The number of a new record is set once it is in the journal.
Problem runAction(Store &store, Record &record, Action action, const QVector<Change> &endings,
                  std::chrono::milliseconds patience, QStringList &notes);

/// Takes back what was begun and not ended, and tidies up what was done. @p notes says what was
/// found.
/// @return the problem of what has to stay as it is for now
Problem recoverAll(Store &store, QStringList &notes);

} // namespace doctor
