#pragma once

#include "host/khelioexport.h"

namespace helio {

/// Offers ":/config/Override.xml", which describes the MIME types of the suite's documents to the
/// desktop, unless another module has registered that resource. Call it once modules are loaded.
HELIO_EXPORT void offerMimePackage();

} // namespace helio
