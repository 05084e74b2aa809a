#pragma once

/// JSON keys of the facts that the probe program prints and the checks read.
namespace programs::facts {

constexpr const char *fault = "fault";
constexpr const char *names = "names";
constexpr const char *platform = "platform";
constexpr const char *screens = "screens";
constexpr const char *renderer = "renderer";
constexpr const char *version = "version";
constexpr const char *address = "address";
constexpr const char *defaultPrinter = "default";
constexpr const char *printers = "printers";
constexpr const char *name = "name";
constexpr const char *isStopped = "stopped";
constexpr const char *isAccepting = "accepting";
constexpr const char *reasons = "reasons";

} // namespace programs::facts
