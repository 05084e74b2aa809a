#include "helio/runtime/suitehome.h"

#include <QDir>

#include "helio/runtime/configuration.h"
#include "host/krt.h"

void helio::makeDefaultSuiteHome()
{
    if (setting(QStringLiteral("suiteHome"), QString()).isEmpty())
        QDir().mkpath(krt::dirs::orvaneHome());
}
