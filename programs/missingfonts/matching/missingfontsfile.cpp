#include "programs/missingfonts/matching/missingfontsfile.h"

#include <stdexcept>

#include <QDir>
#include <QFile>
#include <QSettings>

#include "programs/suitehome/suitehome.h"
#include "qtversion/qtversion.h"

namespace programs {

void writeMissingFonts(const QString &suiteHome, const QString &program,
                       const QStringList &families)
{
    const QString directory = answerDirectory(suiteHome);
    if (!QDir().mkpath(directory))
        throw std::runtime_error("cannot make the directory " +
                                 QFile::encodeName(directory).toStdString());
    const QString path = directory + QLatin1Char('/') + program + QStringLiteral("missfonts.ini");
    QSettings file(path, qtversion::suiteIni());
    file.setValue(QStringLiteral("vyrtool/MissFonts"), families.join(QLatin1Char(';')));
    file.sync();
    if (file.status() != QSettings::NoError)
        throw std::runtime_error("cannot write " + QFile::encodeName(path).toStdString());
}

} // namespace programs
