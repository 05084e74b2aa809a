#include "helio/runtime/hostevents.h"

namespace helio {

HostEvents &HostEvents::instance()
{
    // Never destroyed: threads that outlive main() may still start programs.
    static auto *events = new HostEvents;
    return *events;
}

} // namespace helio
