#pragma once

#include <QObject>
#include <QStringList>

#include "desktop/associationlisting.h"

namespace OfficeAssiant {

/// Inspects and repairs desktop shortcuts and file associations by running scripts. A function that
/// only starts a script does not report its outcome.
class KDesktopHelp : public QObject
{
    Q_OBJECT

public:
    explicit KDesktopHelp(QObject *parent = nullptr);
    ~KDesktopHelp() override;

    /// File names of the suite's shortcuts on the user's desktop; one empty text if there is none.
    QStringList desktopFiles() const;

    /// How the suite's components run, from its settings: "helio_independ" (separate applications,
    /// the default), "helio_fushion" (one integrated application) or another word.
    QString componentMode() const;

    /// Starts to restore the shortcut of each application.
    void restoreSeparateShortcuts() const;

    /// Starts to restore the one shortcut of the integrated application.
    void restoreIntegratedShortcut() const;

    /// The MIME type of a document of each suffix (gio info or gvfs-info).
    AssociationListing mimeTypes() const;

    /// The default application for a document of each suffix (gio mime or gvfs-mime).
    AssociationListing defaultApplications() const;

    /// Installs the suite's types for the current user, if the directory for them exists, and
    /// starts to make the suite the default application for its documents.
    void repairAssociations() const;
};

} // namespace OfficeAssiant
