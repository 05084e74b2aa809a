#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include "doctor/machine/boundedprogram.h"
#include "doctor/machine/filereading.h"
#include "doctor/probes/facts.h"
#include "doctor/probes/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr char debianStatus[] = "/var/lib/dpkg/status";
constexpr char rpmDatabase[] = "/var/lib/rpm";
constexpr qint64 largestStatus = 64 * 1024 * 1024;
constexpr std::chrono::seconds versionLimit(5);

QByteArray field(const QByteArray &line, const char *name)
{
    return line.startsWith(name) ? line.mid(static_cast<int>(qstrlen(name))).trimmed()
                                 : QByteArray();
}

/// Read only where rpm keeps packages; dpkg's are read from its file. Where rpm is a tool among
/// others it keeps none, and would make a database in the home directory.
std::optional<InstalledPackage> rpmPackage(const QString &name, const Looking &looking)
{
    if (name.startsWith(QLatin1Char('-')) || !looking.machine.root.isEmpty() ||
        QDir(QLatin1String(rpmDatabase)).isEmpty())
        return std::nullopt;
    const ProgramOutput output = runSystemProgram(
        QStringLiteral("rpm"),
        {QStringLiteral("-q"), QStringLiteral("--dbpath"), QLatin1String(rpmDatabase),
         QStringLiteral("--qf"), QStringLiteral("=%{VERSION}-%{RELEASE}\\n"), name},
        looking.deadline);
    const QByteArray line = output.output.value_or(QByteArray()).split('\n').value(0);
    if (!line.startsWith('='))
        return std::nullopt;
    return InstalledPackage{QString::fromUtf8(line.mid(1)), QStringLiteral("rpm")};
}

Observed lookAtPackage(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("package");
    const QHash<QString, InstalledPackage> &packages =
        looking.facts.debianPackages(looking.machine);
    const auto found = packages.constFind(name);
    const std::optional<InstalledPackage> package =
        found != packages.constEnd() ? std::optional(*found) : rpmPackage(name, looking);
    Observation seen;
    seen.values.insert(QStringLiteral("name"), Value::ofText(name));
    seen.values.insert(QStringLiteral("installed"), Value::ofFlag(package.has_value()));
    if (package) {
        seen.values.insert(QStringLiteral("version"), Value::ofVersion(package->version));
        seen.values.insert(QStringLiteral("manager"), Value::ofText(package->manager));
    }
    return {{seen}, {}};
}

Observed lookAtCommand(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("command");
    if (name.contains(QLatin1Char('/')))
        return {{}, texts::tr("\"%1\" is not the name of a program").arg(name)};
    Observation seen;
    seen.values.insert(QStringLiteral("name"), Value::ofText(name));
    seen.values.insert(QStringLiteral("found"), Value::ofFlag(false));
    const QString path = looking.machine.variable(QStringLiteral("PATH"))
                             .value_or(QStringLiteral("/usr/local/bin:/usr/bin:/bin"));
    for (const QString &directory : path.split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        const QString candidate = directory + QLatin1Char('/') + name;
        const QFileInfo file(looking.machine.located(candidate));
        if (!file.isFile() || !file.isExecutable())
            continue;
        seen.where.append({candidate, 0, 0});
        seen.values[QStringLiteral("found")] = Value::ofFlag(true);
        seen.values.insert(QStringLiteral("path"), Value::ofText(candidate));
        break;
    }
    return {{seen}, {}};
}

/// The first thing in the text that looks like a version.
QString versionIn(const QByteArray &text)
{
    static const QRegularExpression form(QStringLiteral("\\d+(?:\\.\\d+)+[^\\s,;:()\"]*|\\d+"));
    return form.match(QString::fromUtf8(text.left(4096))).captured();
}

Observed lookAtProgramVersion(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("programVersion");
    const QString path = systemProgram(name);
    Observation seen;
    seen.values.insert(QStringLiteral("name"), Value::ofText(name));
    seen.values.insert(QStringLiteral("found"), Value::ofFlag(!path.isEmpty()));
    if (path.isEmpty())
        return {{seen}, {}};
    seen.where.append({path, 0, 0});
    const QString option =
        name == QLatin1String("java") ? QStringLiteral("-version") : QStringLiteral("--version");
    const ProgramOutput output =
        runSystemProgram(name, {option}, looking.deadline.atMost(versionLimit));
    if (!output.output)
        return {{}, output.problem};
    seen.values.insert(QStringLiteral("version"), Value::ofVersion(versionIn(*output.output)));
    return {{seen}, {}};
}

constexpr Parameter packageParameters[] = {{"package", ParameterType::Text, true}};
constexpr ProbeValue packageValues[] = {{"name", ValueType::Text},
                                        {"installed", ValueType::Flag},
                                        {"version", ValueType::Version},
                                        {"manager", ValueType::Text}};
constexpr Parameter commandParameters[] = {{"command", ParameterType::Text, true}};
constexpr ProbeValue commandValues[] = {
    {"name", ValueType::Text}, {"found", ValueType::Flag}, {"path", ValueType::Text}};
constexpr char askedPrograms[] =
    "bash|fc-match|fcitx|fcitx5|gio|gs|ibus|java|libreoffice|python3|rpm";
constexpr Parameter versionParameters[] = {
    {"programVersion", ParameterType::Word, true, askedPrograms}};
constexpr ProbeValue versionValues[] = {
    {"name", ValueType::Text}, {"found", ValueType::Flag}, {"version", ValueType::Version}};

} // namespace

const QHash<QString, InstalledPackage> &Facts::debianPackages(const Machine &machine)
{
    std::call_once(m_packagesRead, [this, &machine] {
        const FileContent file =
            readFile(machine.located(QLatin1String(debianStatus)), largestStatus);
        const QByteArray content = file.content.value_or(QByteArray());
        QByteArray name;
        QByteArray version;
        bool isInstalled = false;
        for (int begin = 0; begin < content.size();) {
            const int found = content.indexOf('\n', begin);
            const int end = found < 0 ? content.size() : found;
            const QByteArray line =
                QByteArray::fromRawData(content.constData() + begin, end - begin);
            begin = end + 1;
            if (line.startsWith("Package: "))
                name = field(line, "Package: ");
            else if (line.startsWith("Status: "))
                isInstalled = line.endsWith(" installed");
            else if (line.startsWith("Version: "))
                version = field(line, "Version: ");
            if (!line.isEmpty() && begin < content.size())
                continue;
            if (isInstalled)
                m_packages.insert(QString::fromUtf8(name),
                                  {QString::fromUtf8(version), QStringLiteral("dpkg")});
            isInstalled = false;
        }
    });
    return m_packages;
}

const ProbeKind packageKind{"package", packageParameters, packageValues, &lookAtPackage};
const ProbeKind commandKind{"command", commandParameters, commandValues, &lookAtCommand};
const ProbeKind programVersionKind{"programVersion", versionParameters, versionValues,
                                   &lookAtProgramVersion};

} // namespace doctor
