#include "plugin/config/suitefiles.h"

#include <QCoreApplication>
#include <QDir>

#include "host/krt.h"

namespace OfficeAssiant {

QString suiteTemporaryDirectory()
{
    return krt::dirs::orvaneHome() + QLatin1String("/tmp");
}

bool makeSuiteTemporaryDirectory()
{
    const QDir directory(suiteTemporaryDirectory());
    return directory.exists() || QDir().mkdir(directory.path());
}

QString checkToolPath()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/vyrEnvCheckTool");
}

SuiteSettings::SuiteSettings() : QSettings(QStringLiteral("Orvane"), QStringLiteral("Office")) {}

} // namespace OfficeAssiant
