#pragma once

#include <QString>
#include <QStringList>

#include "doctor/why/denied/pathwalk.h"

namespace ctl {

/// The parsed arguments of "assistantctl why".
struct WhyLine
{
    /// What is wrong with the arguments; empty if nothing is. Nothing else counts then.
    QString fault;
    /// Help to print; empty if something is asked.
    QString text;
    QString path;
    doctor::Access access = doctor::Access::Read;
    bool json = false;
    bool fix = false;
    bool yes = false;
    bool dryRun = false;
};

/// Parses what follows "why".
WhyLine parseWhyLine(const QStringList &arguments);

} // namespace ctl
