#pragma once

#include <QString>

namespace OfficeAssiant {

/// The file in which the ibus daemon of this session leaves its bus address, as far as the
/// environment tells; it need not exist. On Wayland that is the display's own file if there is
/// one, else the X11 display's.
QString ibusBusAddressFile(const QString &machineIdFile);

} // namespace OfficeAssiant
