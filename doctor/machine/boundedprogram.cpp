#include "doctor/machine/boundedprogram.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

#include "doctor/machine/groupprocess.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr int mostOutput = 1024 * 1024;
constexpr std::array<const char *, 5> directories{"/usr/local/bin/", "/usr/bin/", "/bin/",
                                                  "/usr/sbin/", "/sbin/"};
/// None of them writes anything with the arguments that probes give them.
constexpr std::array<const char *, 12> allowedPrograms{
    "bash", "fc-match", "fcitx",       "fcitx5", "gio",     "gs",
    "ibus", "java",     "libreoffice", "lpstat", "python3", "rpm"};

QProcessEnvironment plainEnvironment()
{
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/local/bin:/usr/bin:/bin"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    const QString nowhere = QStringLiteral("/nonexistent");
    for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"})
        environment.insert(QLatin1String(name), nowhere);
    return environment;
}

} // namespace

QString systemProgram(const QString &name)
{
    const auto isName = [&name](const char *allowed) { return name == QLatin1String(allowed); };
    if (std::none_of(allowedPrograms.begin(), allowedPrograms.end(), isName))
        return {};
    for (const char *directory : directories) {
        const QFileInfo file(QLatin1String(directory) + name);
        if (file.isFile() && file.isExecutable())
            return file.filePath();
    }
    return {};
}

ProgramOutput runSystemProgram(const QString &name, const QStringList &arguments,
                               const Deadline &deadline)
{
    const QString path = systemProgram(name);
    if (path.isEmpty())
        return {std::nullopt, texts::tr("%1 is not installed").arg(name)};
    GroupProcess process;
    process.setProcessEnvironment(plainEnvironment());
    process.setWorkingDirectory(QStringLiteral("/"));
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(path, arguments, QIODevice::ReadOnly);
    QByteArray output;
    while (process.state() != QProcess::NotRunning) {
        const int left = static_cast<int>(deadline.left().count());
        if (left == 0 || output.size() > mostOutput) {
            process.killGroup();
            return {std::nullopt, left == 0 ? texts::tr("%1 took too long").arg(name)
                                            : texts::tr("%1 wrote too much").arg(name)};
        }
        process.waitForReadyRead(left);
        output += process.readAll();
    }
    output += process.readAll();
    if (process.error() == QProcess::FailedToStart)
        return {std::nullopt, texts::tr("%1 cannot be started").arg(name)};
    if (process.exitStatus() != QProcess::NormalExit)
        return {std::nullopt, texts::tr("%1 crashed").arg(name)};
    return {output, {}};
}

} // namespace doctor
