#pragma once

#include <QByteArray>
#include <QStringList>

#include <functional>

namespace helio {

/// What a copy of a profile does not have.
struct LeftOut
{
    /// Entries of the profile's folder.
    QStringList names{};
    /// Lines of one of its files that contain a text.
    QString file{};
    QByteArray lineWith{};
};

/// Copies a profile to a new folder. Links to files become files, and links to folders are left
/// out: nothing in the copy leads back.
/// @param goOn is asked for each file
/// @return why it could not be copied; empty if it was, or was not to go on
QString copyProfile(const QString &from, const QString &to, const LeftOut &leftOut,
                    const std::function<bool()> &goOn);

} // namespace helio
