#include "desktop/kdesktophelp.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>

#include <optional>

#include "host/krt.h"
#include "info/runcommand.h"
#include "plugin/config/scriptstaging.h"

namespace OfficeAssiant {

namespace {

const QString listShortcutsScript = QStringLiteral("getdesktopfile.sh");
const QString restoreShortcutsScript = QStringLiteral("recovericon.sh");
const QString listTypesScript = QStringLiteral("getmimeinfo.sh");
const QString listApplicationsScript = QStringLiteral("getopeninfo.sh");
const QString repairScript = QStringLiteral("repairasso.sh");

/// The words that the restoring script knows.
const QString separateShortcuts = QStringLiteral("other");
const QString integratedShortcut = QStringLiteral("fusion");

const QString settingsOrganization = QStringLiteral("Orvane");
const QString settingsApplication = QStringLiteral("Office");
const QString componentModeKey =
    QStringLiteral("6.0/vyroffice/Application Settings/AppComponentMode");
const QString separateMode = QStringLiteral("helio_independ");

const QString sampleDocuments = QStringLiteral("/asso_template");
const QString typePackageResource = QStringLiteral(":/config/Override.xml");
const QString typePackage = QStringLiteral("Override.xml");
const QString userTypePackages = QStringLiteral(".local/share/mime/packages");

QString sampleDirectory()
{
    return QCoreApplication::applicationDirPath() + sampleDocuments;
}

void restoreShortcuts(const QString &which)
{
    const QString script = stagedScript(restoreShortcutsScript);
    if (script.isEmpty())
        return;
    const QString installPath = QCoreApplication::applicationDirPath() + QStringLiteral("/..");
    krt::ksafe::KProcess::StartDetach(script, {which, installPath}, QString(), nullptr);
}

AssociationListing listAssociations(const QString &scriptName)
{
    const QString script = stagedScript(scriptName);
    if (script.isEmpty())
        return {AssociationListing::NoScript, {}};
    const std::optional<QByteArray> output =
        readCommandOutput(QStringLiteral("bash ") + script + QLatin1Char(' ') + sampleDirectory());
    if (!output)
        return {AssociationListing::NotStarted, {}};
    return {AssociationListing::Listed, associationsOf(QString::fromLocal8Bit(*output))};
}

} // namespace

KDesktopHelp::KDesktopHelp(QObject *parent) : QObject(parent) {}

KDesktopHelp::~KDesktopHelp() = default;

QStringList KDesktopHelp::desktopFiles() const
{
    const QString script = stagedScript(listShortcutsScript);
    if (script.isEmpty())
        return {QString()};
    return runCommand(script).split(QLatin1Char('\n'));
}

QString KDesktopHelp::componentMode() const
{
    const QSettings settings(settingsOrganization, settingsApplication);
    const QString mode = settings.value(componentModeKey).toString();
    return mode.isEmpty() ? separateMode : mode;
}

void KDesktopHelp::restoreSeparateShortcuts() const
{
    restoreShortcuts(separateShortcuts);
}

void KDesktopHelp::restoreIntegratedShortcut() const
{
    restoreShortcuts(integratedShortcut);
}

AssociationListing KDesktopHelp::mimeTypes() const
{
    return listAssociations(listTypesScript);
}

AssociationListing KDesktopHelp::defaultApplications() const
{
    return listAssociations(listApplicationsScript);
}

void KDesktopHelp::repairAssociations() const
{
    // The desktop's own watcher reads the package in; the page lists again to see what came of it.
    stageResource(typePackageResource, typePackage,
                  QDir::homePath() + QDir::separator() + userTypePackages);
    const QString script = stagedScript(repairScript);
    if (!script.isEmpty())
        krt::ksafe::KProcess::StartDetach(script, {sampleDirectory()}, QString(), nullptr);
}

} // namespace OfficeAssiant
