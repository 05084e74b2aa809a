#pragma once

namespace testsupport {

/// The time limit for a condition to become true: generous, since the machine may be busy.
constexpr int longestWaitMs = 60000;

} // namespace testsupport
