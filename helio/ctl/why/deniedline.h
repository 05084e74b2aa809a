#pragma once

#include <QString>
#include <QStringList>

#include "doctor/why/denied/pathwalk.h"
#include "helio/ctl/why/whyoptions.h"

namespace ctl {

/// The parsed arguments of "assistantctl why denied".
struct DeniedLine : WhyFlags
{
    QString path;
    doctor::Access access = doctor::Access::Read;
};

/// Parses what follows "why".
DeniedLine parseDeniedLine(const QStringList &arguments);

QString deniedHelp();

} // namespace ctl
