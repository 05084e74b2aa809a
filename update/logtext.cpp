#include "update/logtext.h"

#include <QByteArray>
#include <QFile>

#include <sys/stat.h>

#include "qtversion/qtversion.h"

namespace OfficeAssiant {

namespace {

constexpr qint64 pieceSize = qint64(64) * 1024;

/// Opening a pipe that nobody writes to would block forever.
bool isPipe(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

} // namespace

std::optional<QString> readLogText(const QString &path, qint64 largestText)
{
    if (isPipe(path))
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    QByteArray text;
    for (;;) {
        const QByteArray piece = file.read(pieceSize);
        const int length =
            static_cast<int>(qstrnlen(piece.constData(), static_cast<uint>(piece.size())));
        text.append(piece.constData(), length);
        if (text.size() > largestText)
            return qtversion::wholeCharacters(text.left(static_cast<int>(largestText)));
        if (piece.isEmpty() || length < piece.size())
            return QString::fromUtf8(text);
    }
}

} // namespace OfficeAssiant
