#pragma once

#include "doctor/journal/journal.h"
#include "programs/replace/documentsearch.h"

namespace programs {

/// Writes the documents with their replacements: all or none. Each must still be as it was when it
/// was searched. The doctor's journal keeps the bytes before.
doctor::JournalResult replaceIn(const QVector<SearchedDocument> &documents);

/// Takes a replacement back, by its number in the journal; 0 is the newest.
doctor::JournalResult undoReplacing(int number);

} // namespace programs
