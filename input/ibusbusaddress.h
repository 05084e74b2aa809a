#pragma once

#include <QString>

namespace OfficeAssiant {

/// The file to which the ibus daemon of this session writes its bus address, going by the
/// environment; it need not exist. On Wayland this is the Wayland display's file if there is one,
/// else the X11 display's.
QString ibusBusAddressFile(const QString &machineIdFile);

} // namespace OfficeAssiant
