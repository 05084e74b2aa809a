#pragma once

#include <QStringList>

namespace tools {

/// "[--ignore-case] [--replace TEXT] FIND PATH…" or "--undo [NUMBER]": prints each hit with what is
/// around it, and replaces only when it is told to. Returns the exit status.
int replaceCommand(QStringList words);

} // namespace tools
