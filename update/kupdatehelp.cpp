#include "update/kupdatehelp.h"

namespace OfficeAssiant {

KUpdateHelp::KUpdateHelp(QObject *parent) : QObject(parent) {}

KUpdateHelp::~KUpdateHelp() = default;

} // namespace OfficeAssiant
