#include "helio/runtime/search/unsearchedmounts.h"

#include <QList>

#include <array>
#include <cstdio>
#include <memory>

#include <mntent.h>

QByteArray helio::unsearchedFileSystems()
{
    return QByteArrayLiteral("9p afs autofs binfmt_misc bpf ceph cgroup cgroup2 cifs coda configfs "
                             "curlftpfs debugfs devfs devpts devtmpfs efivarfs ftpfs fuse.ceph "
                             "fuse.glusterfs fuse.gvfsd-fuse fuse.mfs fuse.portal fuse.rclone "
                             "fuse.rozofs fuse.sshfs fusectl fusesmb gfs2 hugetlbfs lustre "
                             "lustre_lite mfs mqueue ncpfs nfs nfs4 nsfs ocfs ocfs2 proc pstore "
                             "rpc_pipefs securityfs selinuxfs shfs smb3 smbfs sysfs tracefs usbfs");
}

QSet<QByteArray> helio::unsearchedMountPoints()
{
    QSet<QByteArray> mountPoints;
    const QList<QByteArray> types = unsearchedFileSystems().split(' ');
    const std::unique_ptr<FILE, int (*)(FILE *)> mounts(::setmntent("/proc/self/mounts", "r"),
                                                        ::endmntent);
    if (!mounts)
        return mountPoints;
    mntent entry;
    std::array<char, 8192> text;
    while (::getmntent_r(mounts.get(), &entry, text.data(), static_cast<int>(text.size()))) {
        if (types.contains(entry.mnt_type))
            mountPoints.insert(entry.mnt_dir);
    }
    return mountPoints;
}
