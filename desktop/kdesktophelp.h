#pragma once

#include <QObject>
#include <QStringList>

#include "desktop/associationlisting.h"

namespace OfficeAssiant {

/// Inspects and repairs desktop shortcuts and file associations. The work is done by scripts; what
/// only starts one tells nothing about its outcome.
class KDesktopHelp : public QObject
{
    Q_OBJECT

public:
    explicit KDesktopHelp(QObject *parent = nullptr);
    ~KDesktopHelp() override;

    /// File names of the suite's shortcuts on the user's desktop; one empty text when there is
    /// none.
    QStringList desktopFiles() const;

    /// How the suite's components run, from its settings: "helio_independ" (separate applications,
    /// the default), "helio_fushion" (one integrated application) or another word.
    QString componentMode() const;

    /// Starts to put back the shortcut of each application.
    void restoreSeparateShortcuts() const;

    /// Starts to put back the one shortcut of the integrated application.
    void restoreIntegratedShortcut() const;

    /// The type that the desktop finds for a document of each suffix (gio info or gvfs-info).
    AssociationListing mimeTypes() const;

    /// The application that the desktop opens a document of each suffix with (gio mime or
    /// gvfs-mime).
    AssociationListing defaultApplications() const;

    /// Installs the suite's types for the current user and starts to make the suite the default
    /// application for its documents. Without a directory of user packages no type is installed.
    void repairAssociations() const;
};

} // namespace OfficeAssiant
