#pragma once

#include <QString>

#include <vector>

#include "programs/checktool/checks/findings.h"
#include "programs/checktool/machine/machine.h"

namespace standin {

/// A check that the tool can make.
struct Check
{
    using Function = void (*)(const Machine &machine, const QString &application,
                              const QString &argument, Findings &findings);

    QString name;
    QString description;
    QString argument; ///< what the extra argument means
    Function run;
};

/// All checks, in the order in which the page offers them.
std::vector<Check> checks();

/// Makes the check of that name; that there is none is a finding as well.
Findings findingsOf(const Machine &machine, const QString &name, const QString &application,
                    const QString &argument);

/// Each looks into one subject for the suite's program @p application; the extra argument is what
/// checks() says of it.
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

} // namespace standin
