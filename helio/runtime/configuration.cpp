#include "helio/runtime/configuration.h"

#include <QCoreApplication>
#include <QHash>
#include <QSettings>

#include "qtversion/qtversion.h"

namespace {

QByteArray variableName(const QString &key)
{
    QString name = QStringLiteral("HELIO_");
    for (const QChar c : key) {
        if (c.isUpper())
            name += QLatin1Char('_');
        name += c.toUpper();
    }
    return name.toLatin1();
}

QHash<QString, QString> readIniFile()
{
    QHash<QString, QString> values;
    QSettings file(QCoreApplication::applicationDirPath() + QStringLiteral("/helio.ini"),
                   QSettings::IniFormat);
    // Directories may have names in any language; without a codec Qt reads Latin-1.
    qtversion::useUtf8(file);
    const QStringList keys = file.allKeys();
    for (const QString &key : keys)
        values.insert(key, file.value(key).toStringList().join(QLatin1Char(',')));
    return values;
}

} // namespace

QString helio::libraryDirectory()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral(LIBRARY_PATH);
}

QString helio::setting(const QString &key, const QString &fallback)
{
    // Read at the first call, even if the environment answers that one: the static lives longer
    // than any static object whose constructor asked for a setting, so destructors may ask too.
    static const QHash<QString, QString> iniFile = readIniFile();
    QString fromEnvironment = qEnvironmentVariable(variableName(key).constData());
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    const QString fromFile = iniFile.value(key);
    return fromFile.isEmpty() ? fallback : fromFile;
}
