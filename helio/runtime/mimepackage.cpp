#include "helio/runtime/mimepackage.h"

#include <QFile>
#include <QResource>

// Outside any namespace: the macros declare functions of rcc's.

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
    // Of two resources with the same name Qt finds the one registered first, which is this
    // library's own.
    withdraw();
    if (!QFile::exists(QStringLiteral(":/config/Override.xml")))
        offer();
}
