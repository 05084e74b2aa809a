#pragma once

#include "programs/screengrab/grabbedpicture.h"

namespace standin {

/// Takes a picture of the whole X screen that $DISPLAY names.
GrabbedPicture grabX11();

} // namespace standin
