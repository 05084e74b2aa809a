#include "plugin/config/suitefiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <filesystem>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

#include "host/krt.h"
#include "qtversion/qtversion.h"

namespace OfficeAssiant {

QString suiteTemporaryDirectory()
{
    return krt::dirs::orvaneHome() + QLatin1String("/tmp");
}

bool makeSuiteTemporaryDirectory()
{
    const QString directory = suiteTemporaryDirectory();
    return QDir(directory).exists() ||
           ::mkdir(QFile::encodeName(directory).constData(), S_IRWXU) == 0;
}

QList<QByteArray> plainFiles(const QString &directory)
{
    QList<QByteArray> names;
    std::error_code ignored;
    std::filesystem::directory_iterator file(QFile::encodeName(directory).toStdString(), ignored);
    for (; file != std::filesystem::directory_iterator(); file.increment(ignored)) {
        const QByteArray name = QByteArray::fromStdString(file->path().filename().string());
        if (!name.startsWith('.') && file->is_regular_file(ignored))
            names.append(name);
    }
    return names;
}

void removePlainFiles(const QString &directory)
{
    const QByteArray prefix = QFile::encodeName(directory) + '/';
    for (const QByteArray &name : plainFiles(directory))
        ::unlink((prefix + name).constData());
}

QString checkToolPath()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/vyrEnvCheckTool");
}

SuiteSettings::SuiteSettings()
    : QSettings(qtversion::suiteConf(), QSettings::UserScope, QStringLiteral("Orvane"),
                QStringLiteral("Office"))
{
}

} // namespace OfficeAssiant
