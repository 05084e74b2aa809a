#pragma once

#include <QByteArray>
#include <QString>

namespace programs {

/// A package, as the package manager knows it.
struct InstalledPackage
{
    /// Empty when the package is not installed.
    QString installed;
    /// The version that the package sources offer; empty when they offer none.
    QString candidate;
    /// Why nothing is known; else empty.
    QString error;

    /// Reads the output of "apt-cache policy PACKAGE" in the language C.
    static InstalledPackage ofPolicy(const QByteArray &output);

    /// Asks apt-cache about @p package.
    static InstalledPackage ask(const QString &package, int timeoutMs);
};

} // namespace programs
