#include "desktop/kdesktophelp.h"

namespace OfficeAssiant {

KDesktopHelp::KDesktopHelp(QObject *parent) : QObject(parent) {}

KDesktopHelp::~KDesktopHelp() = default;

} // namespace OfficeAssiant
