#pragma once

class QString;

namespace OfficeAssiant {

/// Kills the processes that run @p program and descend from this process, with their own
/// descendants and, where such a process leads one, its process group. The shell starts programs
/// without telling which process they became.
void killOwnProcesses(const QString &program);

} // namespace OfficeAssiant
