#include "helio/runtime/hostevents.h"

helio::HostEvents &helio::HostEvents::instance()
{
    static HostEvents events;
    return events;
}
