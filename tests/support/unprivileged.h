#pragma once

#include <functional>

namespace testsupport {

/// Whether @p check holds in a process that has to heed permissions even when root runs the tests.
/// What the check does to files stays; what it does to objects does not.
bool holdsUnprivileged(const std::function<bool()> &check);

} // namespace testsupport
