#pragma once

#include "helio/ctl/commandline.h"
#include "helio/ctl/exitstatus.h"

namespace helio {
class HeadlessShell;
}

namespace ctl {

class EventPrinter;

/// Sends the command of @p line, prints its answer and, if asked to, waits for later ones.
ExitStatus runSingleCommand(helio::HeadlessShell &shell, const EventPrinter &printer,
                            const CommandLine &line);

} // namespace ctl
