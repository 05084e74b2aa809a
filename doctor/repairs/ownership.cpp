#include "doctor/repairs/ownership.h"

#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace doctor {

namespace {

constexpr mode_t othersMayWrite = S_IWGRP | S_IWOTH;

/// The directory that something is made in; the nearest one that exists.
QString existingFolder(const QString &path)
{
    QString folder = path.section(QLatin1Char('/'), 0, -2);
    while (!folder.isEmpty() && !QFileInfo::exists(folder))
        folder = folder.section(QLatin1Char('/'), 0, -2);
    return QFileInfo(folder.isEmpty() ? QStringLiteral("/") : folder).canonicalFilePath();
}

} // namespace

std::optional<struct stat> stateOf(const QString &path)
{
    struct stat state;
    if (lstat(QFile::encodeName(path).constData(), &state) != 0)
        return std::nullopt;
    return state;
}

bool isOurs(const Machine &machine, const QString &path)
{
    const QString folder = existingFolder(path);
    const std::optional<struct stat> state = stateOf(folder);
    if (!state || state->st_uid != geteuid())
        return false;
    const QString home = QFileInfo(machine.located(machine.home())).canonicalFilePath();
    const bool isAtHome =
        !home.isEmpty() && (folder + QLatin1Char('/')).startsWith(home + QLatin1Char('/'));
    return isAtHome || (state->st_mode & othersMayWrite) == 0;
}

} // namespace doctor
