#pragma once

#include <QByteArray>
#include <QVector>

#include "doctor/why/denied/credentials.h"

namespace doctor {

/// The bits of a mode's last digit.
constexpr unsigned runRight = 1;
constexpr unsigned writeRight = 2;
constexpr unsigned readRight = 4;

/// An entry of an access control list; see acl(5).
struct AclEntry
{
    enum Tag : quint16 {
        Owner = 0x01,
        User = 0x02,
        OwningGroup = 0x04,
        Group = 0x08,
        Mask = 0x10,
        Other = 0x20,
    };

    quint16 tag = 0;
    unsigned rights = 0;
    /// Of the user or group that the entry names.
    id_t id = static_cast<id_t>(-1);
};
using Acl = QVector<AclEntry>;

/// Parses "system.posix_acl_access"; empty if @p attribute is no such list.
Acl parseAcl(const QByteArray &attribute);
QByteArray serialized(const Acl &acl);

/// What a file or directory says about who may use it.
struct Guard
{
    mode_t mode = 0;
    uid_t owner = 0;
    gid_t group = 0;
    /// Empty if it has only a mode.
    Acl acl;
};

/// The access list, or one that says the same as the mode.
Acl aclOf(const Guard &guard);

/// What the kernel decides, and what by.
struct Decision
{
    enum class By {
        Owner,
        User,  ///< an entry of the access list for this user
        Group, ///< the owning group, or groups in the access list
        Other,
        Capability,
    };

    bool granted = false;
    By by = By::Other;
    /// An entry of the access list would grant it, but the mask takes it away.
    bool masked = false;
    /// The file's ids are unknown in this user namespace, so that root's privileges do not count.
    bool unknownIds = false;
};

/// Whether @p who gets all of @p rights at once, as path_resolution(7), acl(5) and capabilities(7)
/// have it.
Decision decide(const Guard &guard, unsigned rights, const Credentials &who);

/// Each right of its own; granted ones may still not be granted together.
unsigned singleRights(const Guard &guard, const Credentials &who);

/// The list that gives @p who also @p rights, and leaves everybody else's rights as they are.
/// Empty if there is none.
Acl openedFor(const Guard &guard, unsigned rights, const Credentials &who);

} // namespace doctor
