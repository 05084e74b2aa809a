#include "programs/quickstart/runningoffice.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QThread>
#include <QUrl>
#include <QUuid>

#include <csignal>
#include <functional>

#include <unistd.h>

#include "programs/quickstart/officeconnection.h"

namespace programs {

namespace {

constexpr int pollMs = 20;
constexpr std::chrono::seconds longestAnswer(5);

constexpr char socketTable[] = "/proc/net/unix";
constexpr char sessionSocket[] = "SingleOfficeIPC_";

constexpr char factoryInterface[] = "com.sun.star.lang.XMultiComponentFactory";
constexpr char desktopInterface[] = "com.sun.star.frame.XDesktop";
constexpr char documentsInterface[] = "com.sun.star.container.XEnumerationAccess";

/// Numbers of methods.
enum Method {
    GetServiceManager = 4,
    CreateInstance = 3,
    CreateInstanceWithArguments = 4,
    Terminate = 3,
    GetComponents = 6,
    HasElements = 4,
};

bool holdsInTime(const std::function<bool()> &condition, const doctor::Deadline &deadline)
{
    while (!condition()) {
        if (deadline.isOver())
            return false;
        QThread::msleep(pollMs);
    }
    return true;
}

/// The path of a socket that LibreOffice listens on; empty if nobody does.
QString socketNamed(const QString &name)
{
    const QByteArray end = QStringLiteral("/OSL_PIPE_%1_%2").arg(::geteuid()).arg(name).toLatin1();
    QFile table(QString::fromLatin1(socketTable));
    if (!table.open(QIODevice::ReadOnly))
        return {};
    for (const QByteArray &line : table.readAll().split('\n')) {
        if (line.endsWith(end))
            return QFile::decodeName(line.mid(line.indexOf(" /") + 1));
    }
    return {};
}

/// LibreOffice names its socket after the address of its profile: the MD5 of UTF-16 in this
/// machine's order of bytes, each byte in as few digits as it needs.
QString sessionName(const suites::Installation &installation)
{
    const QString directory = QFileInfo(installation.profile).path();
    const QString address = QString::fromLatin1(QUrl::fromLocalFile(directory).toEncoded());
    const auto *units = reinterpret_cast<const char *>(address.utf16());
    const QByteArray hash = QCryptographicHash::hash(
        QByteArray(units, address.size() * int(sizeof(ushort))), QCryptographicHash::Md5);
    QString name = QLatin1String(sessionSocket);
    for (const char digit : hash)
        name += QString::number(static_cast<unsigned char>(digit), 16);
    return name;
}

/// Sets up what starts LibreOffice, or hands @p options to the running one.
void prepare(QProcess &process, const suites::Installation &installation,
             const QStringList &options)
{
    process.setProgram(installation.command.first());
    process.setArguments(installation.command.mid(1) + options +
                         QStringList{QStringLiteral("--nodefault"), QStringLiteral("--norestore"),
                                     QStringLiteral("--nologo")});
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
}

bool start(const suites::Installation &installation, const QStringList &options)
{
    QProcess process;
    prepare(process, installation, options);
    return process.startDetached();
}

/// The running one listens before it is ready, and answers an empty request when it is. A request
/// of its first moments may get lost.
bool answers(const suites::Installation &installation, const doctor::Deadline &deadline)
{
    while (!deadline.isOver()) {
        QProcess process;
        prepare(process, installation, {});
        process.start();
        const auto patience = deadline.atMost(longestAnswer).left();
        if (process.waitForFinished(static_cast<int>(patience.count())))
            return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }
    return false;
}

EndAnswer endThrough(OfficeConnection &office)
{
    const QByteArray context = office.context();
    const QByteArray factory =
        office.objectFrom(context, "com.sun.star.uno.XComponentContext", GetServiceManager);
    const QByteArray created =
        office.objectFrom(factory, factoryInterface, CreateInstance,
                          OfficeConnection::text("com.sun.star.frame.Desktop") +
                              OfficeConnection::reference(context));
    const QByteArray desktop = office.query(created, desktopInterface);
    const QByteArray documents = office.objectFrom(desktop, desktopInterface, GetComponents);
    const std::optional<bool> isUsed = office.truthFrom(documents, documentsInterface, HasElements);
    if (!isUsed)
        return EndAnswer::Silent;
    // The third argument has it no longer stay without documents.
    office.objectFrom(factory, factoryInterface, CreateInstanceWithArguments,
                      OfficeConnection::text("com.sun.star.office.Quickstart") +
                          OfficeConnection::truths({true, true, false}) +
                          OfficeConnection::reference(context));
    if (*isUsed)
        return EndAnswer::HasDocuments;
    const std::optional<bool> ends = office.truthFrom(desktop, desktopInterface, Terminate);
    return ends.value_or(false) ? EndAnswer::Ends : EndAnswer::HasDocuments;
}

} // namespace

bool isRunning(const suites::Installation &installation)
{
    return !socketNamed(sessionName(installation)).isEmpty();
}

bool startHidden(const suites::Installation &installation, const doctor::Deadline &deadline)
{
    return start(installation, {QStringLiteral("--quickstart")}) &&
           holdsInTime([&] { return isRunning(installation); }, deadline) &&
           answers(installation, deadline);
}

EndAnswer askToEnd(const suites::Installation &installation, const doctor::Deadline &deadline)
{
    const QString name = QUuid::createUuid().toString(QUuid::Id128);
    const QString socket = QStringLiteral("=pipe,name=%1;urp").arg(name);
    // Requests are worked off in turn: a document that is being opened is open then.
    if (!answers(installation, deadline))
        return EndAnswer::Silent;
    const bool listens = start(installation, {QStringLiteral("--accept") + socket}) &&
                         holdsInTime([&] { return !socketNamed(name).isEmpty(); }, deadline);
    if (!listens)
        return EndAnswer::Silent;
    OfficeConnection office(socketNamed(name), deadline);
    const pid_t process = office.process();
    const EndAnswer answer = endThrough(office);
    if (answer != EndAnswer::Ends) {
        start(installation, {QStringLiteral("--unaccept") + socket});
        return answer;
    }
    const auto hasEnded = [&] {
        return !isRunning(installation) && (process == 0 || ::kill(process, 0) != 0);
    };
    return holdsInTime(hasEnded, deadline) ? EndAnswer::Ends : EndAnswer::Silent;
}

} // namespace programs
