#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

void KVyrAssistantToolAPI::choosesamplefile(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::archivepackage(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::chooseattachment(KxWebViewJSContext &) {}
