#include "info/kinfohelp.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <sys/utsname.h>

#include "info/otherofficesuites.h"
#include "info/runcommand.h"
#include "info/shellprocess.h"
#include "info/shellwords.h"
#include "plugin/config/scriptstaging.h"
#include "qtversion/qtversion.h"

namespace OfficeAssiant {

namespace {

constexpr char applicationsDirectory[] = "/usr/share/applications/";
constexpr char cpuCommand[] = "cat /proc/cpuinfo | grep name | cut -f2 -d:";
/// The line feed is part of the format that fc-list gets.
constexpr char fontCommand[] = "fc-list -f \"%-40{family[0]}%{style} \n\"";
constexpr char envCommand[] = "env";
constexpr QLatin1Char listSeparator('|');

QString joined(const QStringList &lines)
{
    return lines.join(listSeparator);
}

QString permissionText(QFile::Permissions permissions)
{
    const auto digits = [permissions](QFile::Permission read, QFile::Permission write,
                                      QFile::Permission execute) {
        QString text;
        for (const QFile::Permission right : {read, write, execute})
            text += QLatin1Char(permissions.testFlag(right) ? '1' : '0');
        return text;
    };
    return digits(QFile::ReadOwner, QFile::WriteOwner, QFile::ExeOwner) + QLatin1Char('-') +
           digits(QFile::ReadGroup, QFile::WriteGroup, QFile::ExeGroup) + QLatin1Char('-') +
           digits(QFile::ReadOther, QFile::WriteOther, QFile::ExeOther);
}

FilePermEntry lookedUp(const QString &name, const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return {name, path, {}, {}, {}, {}};
    return {name,
            path,
            file.owner(),
            file.group(),
            permissionText(file.permissions()),
            file.lastModified().toString(QStringLiteral("hh:mm:ss"))};
}

} // namespace

KInfoHelp::KInfoHelp(QObject *parent) : QObject(parent)
{
    const QString home = QDir::homePath() + QDir::separator();
    addOftenFile(QStringLiteral("Office.conf"),
                 home + QStringLiteral(".config/Orvane/Office.conf"));
    addOftenFile(QStringLiteral(".config"), home + QStringLiteral(".config"));
    addOftenFile(QStringLiteral("Orvane"), home + QStringLiteral(".config/Orvane"));
}

KInfoHelp::~KInfoHelp() = default;

QString KInfoHelp::getKernelInfo()
{
    utsname names;
    if (::uname(&names) == 0)
        m_kernelInfo =
            QStringLiteral("%1 %2  %3")
                .arg(QString::fromLatin1(names.sysname), QString::fromLatin1(names.release),
                     QString::fromLatin1(names.machine));
    return m_kernelInfo;
}

QStringList KInfoHelp::getBrowserInfo()
{
    const QString script = stagedScript(QStringLiteral("getbrowserinfo.sh"));
    if (script.isEmpty())
        return {QString()};
    std::optional<QByteArray> output =
        readCommandOutput(QStringLiteral("bash ") + shellWord(script));
    if (!output)
        return {};
    // The page expects the end-of-file value, read like a character, as the last one.
    output->append('\xff');
    m_browserInfo = QString::fromLocal8Bit(output->constData());
    return m_browserInfo.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList KInfoHelp::getCpuInfo()
{
    m_cpuInfo = runCommand(QLatin1String(cpuCommand));
    return m_cpuInfo.split(QLatin1Char('\n'));
}

QStringList KInfoHelp::getFontInfo()
{
    m_fontInfo = runCommand(QLatin1String(fontCommand));
    QStringList faces = m_fontInfo.split(QLatin1Char('\n'));
    faces.sort(Qt::CaseSensitive);
    return faces;
}

QStringList KInfoHelp::getEnvInfo()
{
    m_envInfo = runCommand(QLatin1String(envCommand));
    return m_envInfo.split(QLatin1Char('\n'));
}

QStringList KInfoHelp::getOtherOfficeInfo() const
{
    return otherOfficeSuites(QLatin1String(applicationsDirectory));
}

QString KInfoHelp::getVersionInfo() const
{
    QSettings setup(QCoreApplication::applicationDirPath() + QDir::separator() +
                        QStringLiteral("cfgs") + QDir::separator() + QStringLiteral("setup.cfg"),
                    qtversion::suiteIni());
    setup.beginGroup(QStringLiteral("Version"));
    const auto number = [&setup](const char *key) {
        return setup.value(QLatin1String(key), QStringLiteral("0")).toString();
    };
    return QStringLiteral("Version:%1.%2.%3.%4")
        .arg(number("MajorVersion"), number("FirstVersion"), number("SecondVersion"),
             number("Version"));
}

QJsonObject KInfoHelp::environmentSnapshot()
{
    // The probes run in this order, not in that of the keys.
    QJsonObject snapshot;
    snapshot.insert(QStringLiteral("sysinfo"), getKernelInfo());
    snapshot.insert(QStringLiteral("vyrinfo"), getVersionInfo());
    snapshot.insert(QStringLiteral("officeinfo"), joined(getOtherOfficeInfo()));
    snapshot.insert(QStringLiteral("browserinfo"), joined(getBrowserInfo()));
    snapshot.insert(QStringLiteral("fontinfo"), joined(getFontInfo()));
    snapshot.insert(QStringLiteral("cpuInfo"), joined(getCpuInfo()));
    snapshot.insert(QStringLiteral("envInfo"), joined(getEnvInfo()));
    return snapshot;
}

QJsonObject KInfoHelp::extractFileInfo()
{
    QJsonObject details;
    for (FilePermEntry &entry : m_oftenFiles) {
        entry = lookedUp(entry.name, entry.path);
        details.insert(entry.name,
                       joined({entry.owner, entry.group, entry.permissions, entry.modified}));
    }
    return details;
}

const QVector<FilePermEntry> &KInfoHelp::oftenFiles() const
{
    return m_oftenFiles;
}

void KInfoHelp::addOftenFile(const QString &name, const QString &path)
{
    m_oftenFiles.append({name, path, {}, {}, {}, {}});
}

bool KInfoHelp::exportOftenFilePermissions(const QString &output)
{
    QStringList paths;
    for (const FilePermEntry &entry : qAsConst(m_oftenFiles))
        paths.append(entry.path);
    return startListing(output, paths);
}

bool KInfoHelp::exportSpecialFilePermissions(const QString &output, const QString &file)
{
    return startListing(output, {file});
}

/// A blank splits a path in two: callers of the library rely on that.
bool KInfoHelp::startListing(const QString &output, const QStringList &paths)
{
    const QString script = stagedScript(QStringLiteral("getfileinfo.sh"));
    if (script.isEmpty())
        return false;
    QStringList words{QStringLiteral("bash"), shellWord(script)};
    for (const QString &path : QStringList(output) + paths)
        words += shellWords(path);
    if (const auto listing = startCommand(words.join(QLatin1Char(' ')), this))
        m_listings.append(*listing);
    return true;
}

void KInfoHelp::waitForListings(int longestMs)
{
    const QDeadlineTimer deadline(longestMs);
    for (const pid_t listing : qAsConst(m_listings))
        hasEnded(listing, deadline);
    m_listings.clear();
}

} // namespace OfficeAssiant
