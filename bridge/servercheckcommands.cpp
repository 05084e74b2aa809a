#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

void KVyrAssistantToolAPI::openremoveurlcheck(KxWebViewJSContext &) {}
