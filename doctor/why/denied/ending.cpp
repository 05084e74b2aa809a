#include "doctor/why/denied/ending.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include "doctor/why/denied/mount.h"

namespace doctor {

namespace {

bool isReadOnlyWhole(const Component &component)
{
    return mountNumbered(component.mount).fileSystemOptions.contains("ro");
}

Obstacle fullness(const struct statvfs &system, bool isDirectory, const Credentials &who)
{
    const fsblkcnt_t blocks = who.usesReserve ? system.f_bfree : system.f_bavail;
    const fsfilcnt_t files = who.usesReserve ? system.f_ffree : system.f_favail;
    // Some file systems count neither.
    if (system.f_blocks > 0 && blocks == 0)
        return Obstacle::DiskFull;
    return isDirectory && system.f_files > 0 && files == 0 ? Obstacle::NoFreeInodes
                                                           : Obstacle::None;
}

/// In the kernel's order: what comes before the rights.
Obstacle beforeRights(const Component &component, const struct statvfs &system, Access access)
{
    const mode_t mode = component.guard.mode;
    const bool isFile = S_ISREG(mode);
    const bool isDirectory = S_ISDIR(mode);
    if (access == Access::Run && !isFile && !isDirectory)
        return Obstacle::NotProgram;
    if (access == Access::Run && isFile && (system.f_flag & ST_NOEXEC) != 0)
        return Obstacle::NoExecMount;
    if (access != Access::Write)
        return Obstacle::None;
    if ((isFile || isDirectory) && (system.f_flag & ST_RDONLY) != 0 && isReadOnlyWhole(component))
        return Obstacle::ReadOnlyFileSystem;
    return component.immutable ? Obstacle::Immutable : Obstacle::None;
}

Obstacle afterRights(const Component &component, const struct statvfs &system,
                     const Credentials &who)
{
    const mode_t mode = component.guard.mode;
    const bool isDirectory = S_ISDIR(mode);
    if (!isDirectory && !S_ISREG(mode))
        return Obstacle::None;
    if ((system.f_flag & ST_RDONLY) != 0)
        return Obstacle::ReadOnlyMount;
    if (component.appendOnly && !isDirectory)
        return Obstacle::AppendOnly;
    return fullness(system, isDirectory, who);
}

} // namespace

unsigned rightsFor(Access access, mode_t mode)
{
    switch (access) {
    case Access::Read:
        return readRight;
    case Access::Write:
        return S_ISDIR(mode) ? writeRight | runRight : writeRight;
    case Access::Run:
        break;
    }
    return runRight;
}

void judgeEnding(Passage &passage, int index, int descriptor, Access access, const Credentials &who)
{
    Component &component = passage.chain[index];
    const unsigned rights = rightsFor(access, component.guard.mode);
    component.needed |= rights;
    struct statvfs system = {};
    ::fstatvfs(descriptor, &system);
    passage.obstacle = beforeRights(component, system, access);
    if (passage.obstacle != Obstacle::None)
        return;
    passage.decision = decide(component.guard, rights, who);
    if (!passage.decision.granted)
        passage.obstacle = Obstacle::Rights;
    else if (access == Access::Write)
        passage.obstacle = afterRights(component, system, who);
}

} // namespace doctor
