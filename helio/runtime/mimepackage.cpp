#include "helio/runtime/mimepackage.h"

#include <QFile>
#include <QResource>

// Outside of any namespace: the macros declare what rcc defines there.

static void withdraw()
{
    Q_CLEANUP_RESOURCE(mimepackage);
}

static void offer()
{
    Q_INIT_RESOURCE(mimepackage);
}

void helio::offerMimePackage()
{
    // This library's own resource came first, when the library was loaded, and of two with one
    // name the first is found.
    withdraw();
    if (!QFile::exists(QStringLiteral(":/config/Override.xml")))
        offer();
}
