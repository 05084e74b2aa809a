#include <QDir>
#include <QFileInfo>
#include <QVersionNumber>
#include <QXmlStreamReader>

#include "doctor/machine/filereading.h"
#include "suites/addons/parts.h"
#include "texts/texts.h"

namespace suites {

namespace {

constexpr char registered[] =
    "/registry/com.sun.star.comp.deployment.bundle.PackageRegistryBackend/backenddb.xml";
constexpr qint64 largestList = 16 << 20;
constexpr int mostEntries = 2000;

/// What a member's type in META-INF/manifest.xml means; empty for what needs no words.
QString useOf(const QString &type)
{
    if (type.contains(QLatin1String("type=Python")))
        return texts::tr("runs Python code");
    if (type.contains(QLatin1String("type=Java")))
        return texts::tr("runs Java code");
    if (type.contains(QLatin1String("type=native")))
        return texts::tr("runs machine code");
    if (type.contains(QLatin1String("basic-library")))
        return texts::tr("brings Basic macros");
    if (type.contains(QLatin1String("framework-script")))
        return texts::tr("brings scripts");
    return type.contains(QLatin1String("configuration-data")) ? texts::tr("changes settings")
                                                              : QString();
}

void readManifest(Addon &addon)
{
    QXmlStreamReader xml(addonFile(addon.path + QStringLiteral("/META-INF/manifest.xml")));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        for (const QXmlStreamAttribute &attribute : xml.attributes()) {
            const QString use = attribute.name() == QLatin1String("media-type")
                                    ? useOf(attribute.value().toString())
                                    : QString();
            if (!use.isEmpty() && !addon.uses.contains(use))
                addon.uses.append(use);
        }
    }
    if (xml.hasError())
        addon.faults.append(texts::tr("its list of parts is missing or damaged"));
}

void readDependency(Addon &addon, const QXmlStreamReader &xml, const QString &version)
{
    const QString name = xml.name().toString();
    const QString value = xml.attributes().value(QStringLiteral("value")).toString();
    if (!name.endsWith(QLatin1String("-minimal-version")))
        return;
    addon.uses.append(
        texts::tr("needs %1 %2 or newer").arg(name.section(QLatin1Char('-'), 0, 0), value));
    if (name.startsWith(QLatin1String("LibreOffice")) &&
        QVersionNumber::fromString(version) < QVersionNumber::fromString(value))
        addon.faults.append(texts::tr("this LibreOffice is older than it needs"));
}

Addon extensionAt(const QString &path, const QString &owner, const QString &version)
{
    Addon addon;
    addon.name = QFileInfo(path).fileName();
    addon.owner = owner;
    addon.path = path;
    QXmlStreamReader xml(addonFile(path + QStringLiteral("/description.xml")));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString value = xml.attributes().value(QStringLiteral("value")).toString();
        if (xml.name() == QLatin1String("identifier"))
            addon.name = value;
        else if (xml.name() == QLatin1String("version"))
            addon.version = value;
        else
            readDependency(addon, xml, version);
    }
    if (xml.hasError())
        addon.faults.append(texts::tr("its description is missing or damaged"));
    readManifest(addon);
    return addon;
}

/// Whether an extension is registered, or why that cannot be told.
void addRegistration(Addon &addon, const doctor::FileContent &list, const QString &entry)
{
    const QByteArray content = list.content.value_or(QByteArray());
    const int start = content.indexOf(entry.toUtf8());
    const QByteArray tag = content.mid(start, content.indexOf('>', start) - start);
    if (!list.content && !list.problem.isEmpty())
        addon.faults.append(
            texts::tr("whether it is registered cannot be read: %1").arg(list.problem));
    else if (start < 0)
        addon.faults.append(texts::tr("it is not registered, so nothing of it runs"));
    else if (tag.contains("revoked=\"true\""))
        addon.faults.append(texts::tr("it is disabled"));
}

/// The list of registered extensions; empty where there is none.
doctor::FileContent registrations(const QString &cache)
{
    const QString path = cache + QLatin1String(registered);
    return QFileInfo::exists(path) ? doctor::readFile(path, largestList)
                                   : doctor::FileContent{QByteArray(), {}};
}

} // namespace

QVector<Addon> extensionsIn(const QString &cache, const QString &owner, const QString &version)
{
    const doctor::FileContent list = registrations(cache);
    QVector<Addon> addons;
    const QDir packages(cache + QStringLiteral("/uno_packages"));
    const auto folders = QDir::Dirs | QDir::NoDotAndDotDot;
    for (const QString &folder : packages.entryList(folders)) {
        for (const QString &name : QDir(packages.filePath(folder)).entryList(folders)) {
            if (addons.size() >= mostEntries)
                return addons;
            Addon addon =
                extensionAt(packages.filePath(folder) + QLatin1Char('/') + name, owner, version);
            addRegistration(addon, list, QLatin1Char('/') + folder + QLatin1Char('/') + name);
            addons.append(addon);
        }
    }
    return addons;
}

QVector<Addon> bundledExtensions(const QString &folder, const QString &version)
{
    QVector<Addon> addons;
    const QDir extensions(folder);
    for (const QString &name : extensions.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        addons.append(extensionAt(extensions.filePath(name), QStringLiteral("bundled"), version));
    return addons;
}

} // namespace suites
