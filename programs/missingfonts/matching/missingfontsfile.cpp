#include "programs/missingfonts/matching/missingfontsfile.h"

#include <stdexcept>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>

namespace standin {

QString suiteHome()
{
    QString fromEnvironment = qEnvironmentVariable("HELIO_SUITE_HOME");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    QSettings file(QCoreApplication::applicationDirPath() + QStringLiteral("/helio.ini"),
                   QSettings::IniFormat);
    file.setIniCodec("UTF-8"); // as the host reads it
    const QString fromFile =
        file.value(QStringLiteral("suiteHome")).toStringList().join(QLatin1Char(','));
    return fromFile.isEmpty() ? QDir::homePath() + QStringLiteral("/.local/share/Orvane")
                              : fromFile;
}

void writeMissingFonts(const QString &suiteHome, const QString &program,
                       const QStringList &families)
{
    const QString directory = suiteHome + QStringLiteral("/tmp");
    if (!QDir().mkpath(directory))
        throw std::runtime_error("cannot make the directory " +
                                 QFile::encodeName(directory).toStdString());
    const QString path = directory + QLatin1Char('/') + program + QStringLiteral("missfonts.ini");
    QSettings file(path, QSettings::IniFormat);
    file.setValue(QStringLiteral("vyrtool/MissFonts"), families.join(QLatin1Char(';')));
    file.sync();
    if (file.status() != QSettings::NoError)
        throw std::runtime_error("cannot write " + QFile::encodeName(path).toStdString());
}

} // namespace standin
