#include "programs/checktool/machine/inputplugins.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QPluginLoader>

#include "programs/checktool/machine/machine.h"

namespace programs {

namespace {

const QString folder = QStringLiteral("/platforminputcontexts");

/// In Qt's search order.
QStringList pluginDirectories(const Machine &machine)
{
    QStringList directories =
        machine.variable("QT_PLUGIN_PATH").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    directories.append(machine.root + QLibraryInfo::location(QLibraryInfo::PluginsPath));
    directories.append(machine.officeDirectory);
    directories.append(machine.officeDirectory + QStringLiteral("/plugins"));
    for (QString &directory : directories)
        directory += folder;
    return directories;
}

} // namespace

InputPlugins InputPlugins::of(const Machine &machine)
{
    InputPlugins plugins;
    plugins.directories = pluginDirectories(machine);
    for (const QString &directory : qAsConst(plugins.directories)) {
        const QFileInfoList files =
            QDir(directory).entryInfoList({QStringLiteral("*.so")}, QDir::Files, QDir::Name);
        for (const QFileInfo &file : files) {
            const QJsonArray keys = QPluginLoader(file.filePath())
                                        .metaData()
                                        .value(QLatin1String("MetaData"))
                                        .toObject()
                                        .value(QLatin1String("Keys"))
                                        .toArray();
            for (const QJsonValue &key : keys) {
                const QString name = key.toString().toLower();
                if (!plugins.paths.contains(name))
                    plugins.paths.insert(name, file.filePath());
            }
        }
    }
    return plugins;
}

} // namespace programs
