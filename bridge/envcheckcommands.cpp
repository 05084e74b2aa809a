#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

void KVyrAssistantToolAPI::vyrenvcheck(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::getvyrenvcheckedresult(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::runfirefoxplugin(KxWebViewJSContext &) {}
