#pragma once

namespace programs {

/// Ends the process with a message and status 1 when it still runs after @p seconds: a network disk
/// that does not respond would block it forever.
void limitTime(unsigned int seconds);

} // namespace programs
