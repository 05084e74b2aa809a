#pragma once

#include "programs/screengrab/grabbedpicture.h"

namespace standin {

/// All screens of the X server that $DISPLAY names, as they are now.
GrabbedPicture grabX11();

} // namespace standin
