#pragma once

#include <QString>

namespace programs {

/// Creates a profile directory for the converter in which documents run no macros and load nothing
/// from elsewhere. False when it cannot be written.
bool writePrintingProfile(const QString &directory);

} // namespace programs
