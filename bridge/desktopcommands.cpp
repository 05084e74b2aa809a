#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

void KVyrAssistantToolAPI::getdesktopiconfile(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::fixfouricon(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::fixoneicon(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::getassoopen(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::getassomime(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::fileassorepair(KxWebViewJSContext &) {}
