#pragma once

namespace testsupport {

/// How long a condition may take to come true: far more than it needs, since the machine may be
/// busy with something else.
constexpr int longestWaitMs = 60000;

} // namespace testsupport
