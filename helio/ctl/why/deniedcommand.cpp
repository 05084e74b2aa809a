#include "helio/ctl/why/deniedcommand.h"

#include <QFile>

#include "helio/ctl/why/accessreport.h"
#include "helio/ctl/why/deniedline.h"
#include "helio/ctl/why/whycommand.h"
#include "helio/ctl/why/whyterminal.h"
#include "helio/doctor/accessjson.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using doctor::Denial;
using helio::WhyRepair;

int statusOf(Denial::Verdict verdict)
{
    switch (verdict) {
    case Denial::Verdict::Granted:
        return AccessGranted;
    case Denial::Verdict::Denied:
        return AccessDenied;
    case Denial::Verdict::Undecided:
        break;
    }
    return AccessUndecided;
}

Denial look(const DeniedLine &line)
{
    return doctor::whyDenied(QFile::encodeName(line.path), line.access);
}

void printDenial(const DeniedLine &line, const Denial &denial)
{
    printAnswer(line, helio::accessObject(line.path, line.access, denial),
                accessText(line.path, line.access, denial));
}

/// What the user may do.
std::optional<WhyRepair> ownRepair(const DeniedLine &line, const Denial &denial)
{
    if (!denial.remedy || !helio::isOwn(*denial.remedy))
        return {};
    return helio::repairOf(line.path, line.access, denial);
}

/// Opens one component after the other, as far as the user may.
Denial fix(const DeniedLine &line, Denial denial)
{
    std::optional<WhyRepair> opening = ownRepair(line, denial);
    while (opening && repair(line, *opening)) {
        denial = look(line);
        opening = ownRepair(line, denial);
    }
    return denial;
}

} // namespace

int runWhyDenied(const QStringList &arguments)
{
    const DeniedLine line = parseDeniedLine(arguments);
    if (const std::optional<int> end = endOfLine(line, deniedHelp()))
        return *end;
    // Bytes that are not text in the locale's encoding arrive as this.
    if (line.path.contains(QChar(QChar::ReplacementCharacter))) {
        print(texts::tr("The path is not text in the encoding of this terminal.\n"), stderr);
        return AccessUndecided;
    }
    Denial denial = look(line);
    printDenial(line, denial);
    if (line.fix && ownRepair(line, denial)) {
        denial = fix(line, denial);
        printDenial(line, denial);
    }
    return statusOf(denial.verdict);
}

} // namespace ctl
