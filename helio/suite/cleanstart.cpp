#include "helio/suite/cleanstart.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include "texts/texts.h"

namespace helio {

namespace {

/// Removes the profile at the end, also when the program that started it has ended before.
constexpr char startAndRemove[] = "profile=$1; shift; \"$@\"; rm -rf -- \"$profile\"";

} // namespace

QString folderOfProfiles(const suites::Installation &installation)
{
    // One in a sandbox sees its own settings only.
    const bool isConfined = installation.source == QLatin1String("flatpak") ||
                            installation.source == QLatin1String("snap");
    return isConfined && !installation.profile.isEmpty()
               ? QDir::cleanPath(installation.profile + QStringLiteral("/../.."))
               : QDir::tempPath();
}

QStringList commandWithProfile(const suites::Installation &installation, const QString &folder)
{
    return installation.command +
           QStringList{QStringLiteral("-env:UserInstallation=") +
                           QUrl::fromLocalFile(folder).toString(QUrl::FullyEncoded),
                       QStringLiteral("--norestore")};
}

QString startClean(const suites::Installation &installation)
{
    const QString parent = folderOfProfiles(installation);
    QTemporaryDir profile(parent + QStringLiteral("/clean-profile-XXXXXX"));
    if (!profile.isValid())
        return texts::tr("cannot write to %1: %2").arg(parent, profile.errorString());
    const QStringList words = QStringList{QStringLiteral("-c"), QLatin1String(startAndRemove),
                                          QStringLiteral("sh"), profile.path()} +
                              commandWithProfile(installation, profile.path());
    if (!QProcess::startDetached(QStringLiteral("/bin/sh"), words))
        return texts::tr("%1 cannot be started").arg(installation.name);
    profile.setAutoRemove(false);
    return {};
}

} // namespace helio
