#include "helio/tasks/running/placing.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include "texts/texts.h"

namespace helio {

namespace {

constexpr qint64 pieceSize = qint64(1) << 20;

QString notWritten(const QString &target, const QString &reason)
{
    return texts::tr("%1 cannot be written: %2").arg(target, reason);
}

/// Whether both have the same to read from here.
bool areEqual(QIODevice &first, QIODevice &second)
{
    for (;;) {
        const QByteArray piece = first.read(pieceSize);
        if (piece != second.read(pieceSize))
            return false;
        if (piece.isEmpty())
            return true;
    }
}

QString copied(QIODevice &source, const QString &target)
{
    const QFileInfo there(target);
    if (there.exists() && !there.isFile())
        return notWritten(target, texts::tr("it is not a plain file"));
    QSaveFile file(target);
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly))
        return notWritten(target, file.errorString());
    if (!there.exists())
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    while (!source.atEnd()) {
        if (file.write(source.read(pieceSize)) < 0)
            break;
    }
    if (!file.commit())
        return notWritten(target, file.errorString());
    QFile back(target);
    if (!source.seek(0) || !back.open(QIODevice::ReadOnly) || !areEqual(source, back))
        return notWritten(target, texts::tr("something else was read back"));
    return {};
}

} // namespace

QString placed(const QString &source, const QString &target)
{
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        return texts::tr("%1 cannot be read: %2").arg(source, file.errorString());
    return copied(file, target);
}

QString written(const QByteArray &content, const QString &target)
{
    QBuffer buffer;
    buffer.setData(content);
    buffer.open(QIODevice::ReadOnly);
    return copied(buffer, target);
}

} // namespace helio
