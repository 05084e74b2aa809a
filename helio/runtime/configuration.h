#pragma once

#include <QString>

#include "host/khelioexport.h"

namespace helio {

/// Reads a setting of the shell: the environment variable HELIO_<NAME>, else the key in
/// "helio.ini" beside the program, else @p fallback. An empty variable or key counts as unset.
///
/// @p key is written as in helio.ini: "suiteHome", whose variable is HELIO_SUITE_HOME.
HELIO_EXPORT QString setting(const QString &key, const QString &fallback);

/// Where the libraries lie that this program may load: libraries of another Qt lie beside the
/// program too, where the window has a Qt of its own. Otherwise the directory of the program.
QString libraryDirectory();

} // namespace helio
