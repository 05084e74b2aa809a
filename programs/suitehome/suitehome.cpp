#include "programs/suitehome/suitehome.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>

#include "qtversion/qtversion.h"

namespace programs {

QString suiteHome()
{
    QString fromEnvironment = qEnvironmentVariable("HELIO_SUITE_HOME");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    QSettings file(QCoreApplication::applicationDirPath() + QStringLiteral("/helio.ini"),
                   QSettings::IniFormat);
    qtversion::useUtf8(file); // as the host reads it
    const QString fromFile =
        file.value(QStringLiteral("suiteHome")).toStringList().join(QLatin1Char(','));
    return fromFile.isEmpty() ? QDir::homePath() + QStringLiteral("/.local/share/Orvane")
                              : fromFile;
}

QString answerDirectory(const QString &suiteHome)
{
    return suiteHome + QStringLiteral("/tmp");
}

} // namespace programs
