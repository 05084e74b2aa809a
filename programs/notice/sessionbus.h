#pragma once

namespace programs {

/// Whether the session has a bus. Connecting without one would start a daemon that keeps running.
bool hasSessionBus();

} // namespace programs
