#pragma once

namespace ctl {

/// Opens /dev/null for each standard stream that this process was started without, before another
/// file gets its number. Call it first in main().
void openMissingStandardStreams();

/// Replaces standard input by /dev/null, so that programs that the library starts do not read the
/// requests of a session. Returns a descriptor for the real input.
int takeStandardInput();

} // namespace ctl
