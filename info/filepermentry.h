#pragma once

#include <QString>

namespace OfficeAssiant {

/// A path whose owner and permissions matter to the suite.
struct FilePermEntry
{
    QString name; ///< label shown to the user
    QString path; ///< absolute
    /// What the latest look at the path found; empty when it does not exist.
    QString owner;
    QString group;
    QString
        permissions;  ///< for example "111-101-101": read, write, execute of owner, group, others
    QString modified; ///< time of day, "hh:mm:ss"
};

} // namespace OfficeAssiant
