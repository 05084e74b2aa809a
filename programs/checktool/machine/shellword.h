#pragma once

#include <QString>

namespace programs {

/// @p text quoted as one word of a command line for sh.
QString shellWord(const QString &text);

} // namespace programs
