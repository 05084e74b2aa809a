#include "doctor/journal/tree/message.h"

#include <cerrno>
#include <cstring>

namespace doctor {

QString Message::filled(const QString &translation) const
{
    // Not QString::arg(): a path may have "%2" in it.
    QString result;
    for (int i = 0; i < translation.size(); ++i) {
        const QChar next = i + 1 < translation.size() ? translation[i + 1] : QChar();
        const int index = translation[i] == QLatin1Char('%') ? next.digitValue() - 1 : -1;
        if (index < 0 || index >= values.size()) {
            result += translation[i];
        } else {
            result += values[index];
            ++i;
        }
    }
    return result;
}

Message systemProblem(int error, const QString &path)
{
    switch (error) {
    case ENOSPC:
        return {"The disk that %1 is on is full.", {path}};
    case EDQUOT:
        return {"Your share of the disk that %1 is on is used up.", {path}};
    case EFBIG:
        return {"%1 would become larger than files may be here.", {path}};
    case EROFS:
        return {"%1 is on a disk that can only be read.", {path}};
    case EACCES:
        return {"You have no right to change or read %1, or a directory on the way to it.", {path}};
    case EPERM:
        return {
            "%1 cannot be changed: it is protected (lsattr shows it) or belongs to another user.",
            {path}};
    case ELOOP:
    case ENOTDIR:
        return {"A directory on the way to %1 was replaced by a link or a file.", {path}};
    case EXDEV:
        return {"%1 cannot be moved to another disk.", {path}};
    default:
        return {"%1 could not be changed: %2.",
                {path, QString::fromLocal8Bit(std::strerror(error))}};
    }
}

} // namespace doctor
