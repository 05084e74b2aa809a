#pragma once

#include <QString>

namespace OfficeAssiant {

/// The per-user directory into which embedded scripts are copied before they run.
QString scriptStagingDirectory();

/// The path of a runnable copy of the embedded script @p name: the installed one if there is
/// one, else a staged copy. Empty when neither can be had.
QString stagedScript(const QString &name);

/// Copies @p resource as @p name into @p targetDirectory (empty: the staging directory, which is
/// made) unless a file of that name is there, and makes it readable and executable for owner and
/// group. Gives its path, or an empty text when it cannot be had.
QString stageResource(const QString &resource, const QString &name, const QString &targetDirectory);

} // namespace OfficeAssiant
