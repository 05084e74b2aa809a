#pragma once

#include <QStringList>
#include <QVector>

#include "suites/installation.h"

namespace suites {

/// An extension or macro library, or something that runs by itself.
struct Addon
{
    QString name;
    QString version;
    /// Who installed it: "user", "shared" or "bundled".
    QString owner;
    QString path;
    /// What it brings or uses, for the user.
    QStringList uses;
    /// Why it does not work, for the user.
    QStringList faults;
};

/// What LibreOffice's files say; nothing is started or changed.
struct Addons
{
    QVector<Addon> extensions;
    QVector<Addon> macros;
    /// Events that the user has tied to macros.
    QVector<Addon> events;
    /// The end of what the extension manager wrote.
    QStringList log;
};

/// The extensions of the user's profile, of all users and of the installation.
QVector<Addon> extensionsOf(const Installation &installation);

/// Those of the user's profile, of all users and of the installation.
Addons addonsOf(const Installation &installation);

} // namespace suites
