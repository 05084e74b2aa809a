#pragma once

namespace ctl {

/// Opens /dev/null in place of each standard stream that this process was started without, before
/// something else gets its number. To be called first in main().
void openMissingStandardStreams();

/// Takes the standard input away from the programs that the library starts, which read /dev/null
/// instead and not the requests of a session. Gives the descriptor under which it is still read.
int takeStandardInput();

} // namespace ctl
