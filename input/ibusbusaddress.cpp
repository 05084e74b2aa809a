#include "input/ibusbusaddress.h"

#include <QFile>
#include <QStandardPaths>

namespace OfficeAssiant {

namespace {

constexpr char busDirectory[] = "/ibus/bus/";
/// Used for displays of other hosts, too: the host part of DISPLAY is ignored.
constexpr char displayHost[] = "unix";
constexpr char waylandSession[] = "wayland";

QString machineId(const QString &file)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return {};
    QByteArray line = source.readLine();
    if (line.endsWith('\n'))
        line.chop(1);
    return QString::fromLatin1(line);
}

/// The "1" of ":1.0"; a DISPLAY without a colon counts as a number itself.
QByteArray x11DisplayNumber()
{
    const QByteArray display = qgetenv("DISPLAY");
    const int begin = display.indexOf(':') + 1;
    const int end = display.indexOf('.', begin);
    return end > 0 ? display.mid(begin, end - begin) : display.mid(begin);
}

} // namespace

QString ibusBusAddressFile(const QString &machineIdFile)
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) +
                         QLatin1String(busDirectory) + machineId(machineIdFile) + QLatin1Char('-') +
                         QLatin1String(displayHost) + QLatin1Char('-');
    if (qgetenv("XDG_SESSION_TYPE") == waylandSession) {
        QString candidate = base + QString::fromLocal8Bit(qgetenv("WAYLAND_DISPLAY"));
        if (QFile::exists(candidate))
            return candidate;
    }
    return base + QString::fromLocal8Bit(x11DisplayNumber());
}

} // namespace OfficeAssiant
