#pragma once

#include "suites/addons/addons.h"

namespace suites {

/// The text of a file; empty if it cannot be read or is unreasonably big.
QByteArray addonFile(const QString &path);

/// Unpacked extensions below @p packages: "*/NAME.oxt" of a cache, or the bundled folders.
QVector<Addon> extensionsIn(const QString &cache, const QString &owner, const QString &version);
QVector<Addon> bundledExtensions(const QString &folder, const QString &version);

/// Basic libraries and Python files below "basic" and "Scripts/python" of @p folder.
QVector<Addon> macrosIn(const QString &folder, const QString &owner);

/// Events in the settings of @p profile that start a macro.
QVector<Addon> eventsOf(const QString &profile);

} // namespace suites
