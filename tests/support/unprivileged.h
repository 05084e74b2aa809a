#pragma once

#include <functional>

namespace testsupport {

/// Whether @p check holds in a process without root's privileges, even if root runs the tests. Runs
/// in a forked child: file changes persist, in-memory changes do not.
bool holdsUnprivileged(const std::function<bool()> &check);

} // namespace testsupport
