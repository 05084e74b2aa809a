#include <cstdio>
#include <pwd.h>
#include <unistd.h>

#include <QCoreApplication>

#include "programs/updater/updatelog.h"
#include "programs/updater/updaterrun.h"

using namespace programs;

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

const QString logPath = QStringLiteral("/var/log/vyrlog/vyrupdate.log");
const QString configName = QStringLiteral("/vyrupdate.cfg");

QString userName()
{
    const struct passwd *user = ::getpwuid(::geteuid());
    return user ? QString::fromLocal8Bit(user->pw_name) : QString::number(::geteuid());
}

int fail(const QString &reason)
{
    std::fprintf(stderr, "vyrupdate: %s\n", reason.toUtf8().constData());
    return failed;
}

} // namespace

/// Replaces the suite's updater: compares the installed version with the one in the package
/// sources, sends nothing, and writes the outcome to the log.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const std::optional<UpdaterTask> task =
        arguments.size() == 2 ? taskOf(arguments.at(1)) : std::nullopt;
    if (!task) {
        std::fprintf(stderr, "usage: vyrupdate /from:manual|/from:lumstart|/sendinstallinfo:true|"
                             "/senduninstallinfo:true\n");
        return wrongUsage;
    }
    UpdateLog log(logPath);
    log.append(QStringLiteral("started by %1 with %2").arg(userName(), arguments.at(1)));
    const QString outcome =
        outcomeOf(*task, readUpdaterConfig(QCoreApplication::applicationDirPath() + configName),
                  QDateTime::currentDateTime(), &InstalledPackage::ask);
    std::printf("%s\n", outcome.toUtf8().constData());
    if (!log.append(outcome))
        return fail(QStringLiteral("cannot write %1: %2").arg(logPath, log.error()));
    return 0;
}
