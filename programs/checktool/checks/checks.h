#pragma once

#include <QString>

#include <vector>

#include "programs/checktool/checks/findings.h"
#include "programs/checktool/machine/machine.h"

namespace programs {

/// A check of the tool.
struct Check
{
    using Function = void (*)(const Machine &machine, const QString &application,
                              const QString &argument, Findings &findings);

    QString name;
    QString description;
    QString argument; ///< the meaning of the extra argument
    Function run;
};

/// All checks, in the page's order.
std::vector<Check> checks();

/// Runs the check @p name; an unknown name is itself a finding.
Findings findingsOf(const Machine &machine, const QString &name, const QString &application,
                    const QString &argument);

/// Each checks one subject for the suite's program @p application; checks() describes the extra
/// argument.
void checkLibraries(const Machine &machine, const QString &application, const QString &argument,
                    Findings &findings);
void checkFonts(const Machine &machine, const QString &application, const QString &argument,
                Findings &findings);
void checkLocale(const Machine &machine, const QString &application, const QString &argument,
                 Findings &findings);
void checkSpace(const Machine &machine, const QString &application, const QString &argument,
                Findings &findings);
void checkConfiguration(const Machine &machine, const QString &application, const QString &argument,
                        Findings &findings);
void checkPrinting(const Machine &machine, const QString &application, const QString &argument,
                   Findings &findings);
void checkDisplay(const Machine &machine, const QString &application, const QString &argument,
                  Findings &findings);
void checkSessionBus(const Machine &machine, const QString &application, const QString &argument,
                     Findings &findings);
void checkInput(const Machine &machine, const QString &application, const QString &argument,
                Findings &findings);
void checkPlugins(const Machine &machine, const QString &application, const QString &argument,
                  Findings &findings);

} // namespace programs
