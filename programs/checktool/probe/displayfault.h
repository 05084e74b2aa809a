#pragma once

namespace programs {

/// From now on Qt's warnings are kept instead of printed. When Qt would abort, because there is no
/// display, the program prints the first warning as the probe's fault and exits normally.
void catchDisplayFaults();

} // namespace programs
