#include "update/logtext.h"

#include <QByteArray>
#include <QFile>

#include <sys/stat.h>

namespace OfficeAssiant {

namespace {

constexpr qint64 pieceSize = 64 * 1024;
constexpr qint64 largestText = 512 * 1024 * 1024;

/// Opening a pipe that nobody writes to would never end.
bool isPipe(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

} // namespace

std::optional<QString> readLogText(const QString &path)
{
    if (isPipe(path))
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    QByteArray text;
    int end = -1;
    while (end < 0) {
        const QByteArray piece = file.read(pieceSize);
        if (piece.isEmpty())
            break;
        const int zeroByte = piece.indexOf('\0');
        if (zeroByte >= 0)
            end = text.size() + zeroByte;
        text += piece;
        if (text.size() > largestText)
            return std::nullopt;
    }
    return QString::fromUtf8(text.constData(), end >= 0 ? end : text.size());
}

} // namespace OfficeAssiant
