#pragma once

#include <QString>

#include "doctor/why/open/places.h"

namespace doctor {

/// The program to which "xdg-open" of xdg-utils 1.1.3 hands a file on the session's desktop; empty
/// where it opens what "xdg-mime" names. Desktops that only show at the display are not recognised.
QString xdgOpenProgram(const OpenPlaces &places);

} // namespace doctor
