#include "helio/runtime/hostevents.h"

helio::HostEvents &helio::HostEvents::instance()
{
    // Never destroyed: a thread that the process waits for at its end may still start a program.
    static auto *events = new HostEvents;
    return *events;
}
