#include "desktop/kdesktophelp.h"

#include <QCoreApplication>
#include <QDir>

#include <optional>

#include "host/krt.h"
#include "info/runcommand.h"
#include "info/shellwords.h"
#include "plugin/config/scriptstaging.h"
#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

constexpr char listShortcutsScript[] = "getdesktopfile.sh";
constexpr char restoreShortcutsScript[] = "recovericon.sh";
constexpr char listTypesScript[] = "getmimeinfo.sh";
constexpr char listApplicationsScript[] = "getopeninfo.sh";
constexpr char repairScript[] = "repairasso.sh";

/// The modes of the restoring script.
constexpr char separateShortcuts[] = "other";
constexpr char integratedShortcut[] = "fusion";

constexpr char componentModeKey[] = "6.0/vyroffice/Application Settings/AppComponentMode";
constexpr char separateMode[] = "helio_independ";

constexpr char sampleDocuments[] = "/asso_template";
constexpr char typePackageResource[] = ":/config/Override.xml";
constexpr char typePackage[] = "Override.xml";
constexpr char userTypePackages[] = ".local/share/mime/packages";

QString sampleDirectory()
{
    return QCoreApplication::applicationDirPath() + QLatin1String(sampleDocuments);
}

void restoreShortcuts(const QString &which)
{
    const QString script = stagedScript(QLatin1String(restoreShortcutsScript));
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
        readCommandOutput(QStringLiteral("bash ") + shellWord(script) + QLatin1Char(' ') +
                          shellWord(sampleDirectory()));
    if (!output)
        return {AssociationListing::NotStarted, {}};
    return {AssociationListing::Listed, associationsOf(QString::fromLocal8Bit(*output))};
}

} // namespace

KDesktopHelp::KDesktopHelp(QObject *parent) : QObject(parent) {}

KDesktopHelp::~KDesktopHelp() = default;

QStringList KDesktopHelp::desktopFiles() const
{
    const QString script = stagedScript(QLatin1String(listShortcutsScript));
    if (script.isEmpty())
        return {QString()};
    return runCommand(shellWord(script)).split(QLatin1Char('\n'));
}

QString KDesktopHelp::componentMode() const
{
    const SuiteSettings settings;
    const QString mode = settings.value(QLatin1String(componentModeKey)).toString();
    return mode.isEmpty() ? QLatin1String(separateMode) : mode;
}

void KDesktopHelp::restoreSeparateShortcuts() const
{
    restoreShortcuts(QLatin1String(separateShortcuts));
}

void KDesktopHelp::restoreIntegratedShortcut() const
{
    restoreShortcuts(QLatin1String(integratedShortcut));
}

AssociationListing KDesktopHelp::mimeTypes() const
{
    return listAssociations(QLatin1String(listTypesScript));
}

AssociationListing KDesktopHelp::defaultApplications() const
{
    return listAssociations(QLatin1String(listApplicationsScript));
}

void KDesktopHelp::repairAssociations() const
{
    // The desktop watches the directory and reads the package; the page then lists again.
    stageResource(QLatin1String(typePackageResource), QLatin1String(typePackage),
                  QDir::homePath() + QDir::separator() + QLatin1String(userTypePackages));
    const QString script = stagedScript(QLatin1String(repairScript));
    if (!script.isEmpty())
        krt::ksafe::KProcess::StartDetach(script, {sampleDirectory()}, QString(), nullptr);
}

} // namespace OfficeAssiant
