#include "bridge/pagefile.h"

#include <QCoreApplication>

namespace OfficeAssiant {

QUrl pageFile(const QString &name)
{
    return QUrl::fromLocalFile(
        QCoreApplication::applicationDirPath() +
        QLatin1String("/addons/vyrassistanttool/officeassistant/resource/html/") + name);
}

} // namespace OfficeAssiant
