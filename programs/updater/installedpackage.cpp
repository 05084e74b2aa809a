#include "programs/updater/installedpackage.h"

#include <QProcess>
#include <QRegularExpression>

namespace standin {

namespace {

constexpr int killTimeoutMs = 5'000;

QString versionBehind(const QString &line, const QString &label)
{
    const QString text = line.trimmed();
    if (!text.startsWith(label))
        return {};
    const QString version = text.mid(label.size()).trimmed();
    return version == QLatin1String("(none)") ? QString() : version;
}

/// A name that is none would be read as an option.
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
        return {{}, {}, QStringLiteral("\"%1\" is no name of a package").arg(package)};
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("apt-cache"), {QStringLiteral("policy"), package},
                  QIODevice::ReadOnly);
    if (!process.waitForStarted())
        return {{}, {}, QStringLiteral("apt-cache: ") + process.errorString()};
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished(killTimeoutMs);
        return {{}, {}, QStringLiteral("apt-cache gave no answer")};
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return {{}, {}, QStringLiteral("apt-cache failed")};
    return ofPolicy(process.readAllStandardOutput());
}

} // namespace standin
