#pragma once

namespace standin {

/// Ends the process with a message and status 1 when it still runs after so many seconds: a disk
/// in the network that does not answer would let it wait forever.
void limitTime(unsigned int seconds);

} // namespace standin
