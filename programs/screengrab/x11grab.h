#pragma once

#include "programs/screengrab/grabbedpicture.h"

namespace programs {

/// Takes a picture of the whole X screen that $DISPLAY names.
GrabbedPicture grabX11();

} // namespace programs
