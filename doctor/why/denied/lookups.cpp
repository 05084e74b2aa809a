#include "doctor/why/denied/lookups.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace doctor {

namespace {

void readAcl(int descriptor, Component &component)
{
    QByteArray attribute(XATTR_SIZE_MAX, '\0');
    const ssize_t size =
        ::getxattr(descriptorPath(descriptor).constData(), "system.posix_acl_access",
                   attribute.data(), static_cast<std::size_t>(attribute.size()));
    component.takesAcl = size > 0 || (size < 0 && errno == ENODATA);
    if (size > 0)
        component.guard.acl = parseAcl(attribute.left(static_cast<int>(size)));
}

} // namespace

QByteArray linkTarget(int directory, const QByteArray &name)
{
    QByteArray target(PATH_MAX, '\0');
    const ssize_t size = ::readlinkat(directory, name.constData(), target.data(),
                                      static_cast<std::size_t>(target.size()));
    return target.left(static_cast<int>(std::max<ssize_t>(0, size)));
}

int inspect(int descriptor, Component &component)
{
    struct statx state = {};
    if (::statx(descriptor, "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_MNT_ID, &state) != 0)
        return errno;
    component.guard = {state.stx_mode, state.stx_uid, state.stx_gid, {}};
    if (!S_ISLNK(state.stx_mode))
        readAcl(descriptor, component);
    component.device = makedev(state.stx_dev_major, state.stx_dev_minor);
    component.inode = state.stx_ino;
    component.mount = state.stx_mnt_id;
    component.immutable = (state.stx_attributes & STATX_ATTR_IMMUTABLE) != 0;
    component.appendOnly = (state.stx_attributes & STATX_ATTR_APPEND) != 0;
    return 0;
}

Descriptor openedAt(int directory, const QByteArray &name)
{
    constexpr int flags = O_PATH | O_NOFOLLOW | O_CLOEXEC;
    Descriptor opened(::openat(directory, name.constData(), flags | O_DIRECTORY));
    if (!opened.isOpen() && errno == ENOTDIR)
        return Descriptor(::openat(directory, name.constData(), flags));
    return opened;
}

} // namespace doctor
