#pragma once

#include <QString>

namespace OfficeAssiant {

/// The per-user directory into which embedded scripts are copied before they run.
QString scriptStagingDirectory();

/// The path of a runnable copy of the embedded script @p name: the installed copy if there is
/// one, else a staged copy. Empty if neither is available.
QString stagedScript(const QString &name);

/// Copies @p resource as @p name into @p targetDirectory, unless a file of that name exists, and
/// makes it readable and executable for owner and group. An empty @p targetDirectory is the staging
/// directory, which is made. Returns the path, or an empty text on failure.
QString stageResource(const QString &resource, const QString &name, const QString &targetDirectory);

/// Removes the plain files of the staging directory, unless another program still uses them. Call
/// it when this process runs no more of them.
void removeStagedScripts();

} // namespace OfficeAssiant
