#pragma once

#include <QString>

#include <optional>

#include "doctor/machine/deadline.h"
#include "suites/installation.h"

namespace programs {

/// How a running LibreOffice answered the request to end.
enum class EndAnswer {
    Ends,
    HasDocuments, ///< it goes on, and ends with its last document
    Silent,       ///< it cannot be asked
};

/// Whether a LibreOffice runs with this installation's profile. It has then a socket of a name that
/// /proc/net/unix lists; nothing connects to it.
bool isRunning(const suites::Installation &installation);

/// Starts it without a window, to stay until it is asked to end. True once it takes documents.
bool startHidden(const suites::Installation &installation, const doctor::Deadline &deadline);

/// Asks the running one to end, if nothing is open in it. Never ends a process by itself.
EndAnswer askToEnd(const suites::Installation &installation, const doctor::Deadline &deadline);

} // namespace programs
