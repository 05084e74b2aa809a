#pragma once

namespace standin {

/// From now on what Qt finds wrong is kept instead of printed. Where it would end the program,
/// because there is no display, it prints the fault as a probe does and ends it without a crash.
void catchDisplayFaults();

} // namespace standin
