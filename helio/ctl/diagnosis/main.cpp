#include <QCoreApplication>

#include <cstdio>

#include "helio/ctl/doctor/doctorcommand.h"
#include "helio/ctl/fleet/fleetcommand.h"
#include "helio/ctl/suite/suitecommand.h"
#include "helio/ctl/why/whycommand.h"
#include "texts/encoding.h"

namespace {

constexpr int wrongUsage = 2;

} // namespace

int main(int argc, char *argv[])
{
    texts::assumeUtf8WithoutLocale();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString word = arguments.value(1);
    if (word == QLatin1String("doctor"))
        return ctl::runDoctor(arguments.mid(2));
    if (word == QLatin1String("why"))
        return ctl::runWhy(arguments.mid(2));
    if (word == QLatin1String("report"))
        return ctl::runReport(arguments.mid(2));
    if (word == QLatin1String("compare"))
        return ctl::runCompare(arguments.mid(2));
    if (word == QLatin1String("suite"))
        return ctl::runSuite(arguments.mid(2));
    std::fputs("assistantdoctor: started by assistantctl for its words doctor, why, report, "
               "compare and suite\n",
               stderr);
    return wrongUsage;
}
