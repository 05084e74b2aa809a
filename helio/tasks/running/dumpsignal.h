#pragma once

#include <QString>

namespace helio {

/// The signal that ended the program, such as "SIGSEGV", as a minidump or an ELF core for this kind
/// of machine tells it; empty for any other file.
QString signalOfDump(const QString &path);

} // namespace helio
