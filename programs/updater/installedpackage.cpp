#include "programs/updater/installedpackage.h"

#include <QRegularExpression>

#include "programs/process/boundedprogram.h"

namespace programs {

namespace {

QString versionBehind(const QString &line, const QString &label)
{
    const QString text = line.trimmed();
    if (!text.startsWith(label))
        return {};
    const QString version = text.mid(label.size()).trimmed();
    return version == QLatin1String("(none)") ? QString() : version;
}

/// Rejects anything else: apt-cache would parse it as an option.
bool isPackageName(const QString &name)
{
    static const QRegularExpression pattern(QStringLiteral("\\A[a-z0-9][a-z0-9+.-]+\\z"));
    return pattern.match(name).hasMatch();
}

} // namespace

InstalledPackage InstalledPackage::ofPolicy(const QByteArray &output)
{
    InstalledPackage package;
    const QStringList lines = QString::fromUtf8(output).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (package.installed.isEmpty())
            package.installed = versionBehind(line, QStringLiteral("Installed:"));
        if (package.candidate.isEmpty())
            package.candidate = versionBehind(line, QStringLiteral("Candidate:"));
    }
    return package;
}

InstalledPackage InstalledPackage::ask(const QString &package, int timeoutMs)
{
    if (!isPackageName(package))
        return {{}, {}, QStringLiteral("\"%1\" is not the name of a package").arg(package)};
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    const ProgramEnd end = runBounded(QStringLiteral("apt-cache"),
                                      {QStringLiteral("policy"), package}, environment, timeoutMs);
    if (end.kind == ProgramEnd::Kind::NotStarted)
        return {{}, {}, QStringLiteral("apt-cache: ") + end.startFault};
    if (end.kind == ProgramEnd::Kind::TimedOut)
        return {{}, {}, QStringLiteral("apt-cache gave no answer")};
    if (!end.hasSucceeded())
        return {{}, {}, QStringLiteral("apt-cache failed")};
    return ofPolicy(end.output);
}

} // namespace programs
