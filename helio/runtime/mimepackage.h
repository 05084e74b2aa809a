#pragma once

#include "host/khelioexport.h"

namespace helio {

/// Offers the desktop's type descriptions of the suite's documents as ":/config/Override.xml",
/// unless another module has registered that resource. To be called once the modules are loaded.
HELIO_EXPORT void offerMimePackage();

} // namespace helio
