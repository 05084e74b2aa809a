#pragma once

#include "doctor/machine/machine.h"
#include "fleet/report/report.h"

namespace doctor {
class Facts;
}

namespace fleet {

/// Distribution, kernel and what else the system is.
Facts systemFacts(const doctor::Machine &machine);
/// Processor, memory, graphics and screens.
Facts hardwareFacts(const doctor::Machine &machine);
/// The file systems of home and temporary files: kind, writable, room.
Facts storageFacts(const doctor::Machine &machine);

/// Language, time zone and keyboard.
Facts localeFacts(const doctor::Machine &machine);
/// The variables of the session, without secrets.
Facts environmentFacts(const doctor::Machine &machine);
/// Settings of toolkits and printing that lie in small files of the user.
Facts desktopFacts(const doctor::Machine &machine);

/// Packages of suite, fonts, desktop and input methods, with their versions.
Facts packageFacts(const doctor::Machine &machine, doctor::Facts &shared);
/// Families of installed fonts.
Facts fontFacts(const doctor::Machine &machine, doctor::Facts &shared);
/// The suites: version, components, plug-ins and languages.
Facts suiteFacts(const doctor::Machine &machine, doctor::Facts &shared);
/// Settings of the suite that is looked after; @p unknown gets what could not be read.
Facts suiteSettings(const doctor::Machine &machine, doctor::Facts &shared, QStringList &unknown);
/// What opens each kind of document.
Facts associationFacts(const doctor::Machine &machine);
/// Input methods of the session.
Facts inputFacts(const doctor::Machine &machine);

} // namespace fleet
