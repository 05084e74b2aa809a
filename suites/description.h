#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace suites {

/// What a file below an installation says: the first capture of the pattern's first match.
struct Entry
{
    QString file;
    QString pattern;
};

/// Where a suite may be installed.
struct Place
{
    /// "package", "folder", "flatpak" or "snap".
    QString source;
    /// A pattern (doctor/machine/pathpattern.h); "~" at its beginning is the home.
    QString folder;
    /// The settings of all programs below the home, where they are not those of the session.
    QString configuration;
    /// What starts it; empty for the program of the description.
    QStringList command;
    /// What the names of its desktop entries begin with; "%1" is the name of the folder.
    QString entries;
};

/// The plug-ins for a desktop, the one that fits best first.
struct Toolkit
{
    /// What XDG_CURRENT_DESKTOP contains; empty for all others.
    QString desktop;
    QStringList plugins;
};

/// Files and folders of a profile that belong together.
struct ProfilePart
{
    QString id;
    QStringList names;
};

/// A suite as its file says it; libreoffice.json is an example.
struct Description
{
    QString id;
    QString name;
    QVector<Place> places;
    Entry version;
    /// The address of the user's directory.
    Entry profile;
    /// The part of that directory that holds the settings.
    QString profilePart;
    /// What starts it: a file below the installation.
    QString program;
    /// The option that opens an empty document, by the program of this suite that it stands for.
    QMap<QString, QString> counterparts;
    /// A file below the installation, by component.
    QMap<QString, QString> components;
    /// Patterns below the installation; "*" stands for a name.
    QString plugins;
    QString languages;
    /// The name of the process that has the documents.
    QString process;
    QVector<Toolkit> toolkits;
    QVector<ProfilePart> parts;
    /// Packages by what they are for and family of distributions ("debian", "fedora", "suse",
    /// "arch"); "%1" stands for a language.
    QMap<QString, QMap<QString, QString>> packages;
};

/// All that this program knows.
const QVector<Description> &descriptions();

/// Null for an unknown id.
const Description *descriptionNamed(const QString &id);
QStringList descriptionIds();

} // namespace suites
