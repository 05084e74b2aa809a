#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

void KVyrAssistantToolAPI::chooselayouterrorfile(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::comparefont(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::openlaytouerrorfile(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::openprinterrorfile(KxWebViewJSContext &) {}
