#pragma once

#include "doctor/why/input/places/settingcollector.h"

namespace doctor {

/// Adds what the desktop entry's Exec line and the scripts on the way to the program set.
void readLaunch(const Launch &launch, SettingCollector &collector);

} // namespace doctor
