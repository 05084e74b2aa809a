#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

void KVyrAssistantToolAPI::getlogfile(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::getupdatesupport(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::getupdateconfig(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::testupdate(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::clearlogfile(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::testdailyreport(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::testuninstallreport(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::testinstallreport(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::changeupdateconfig(KxWebViewJSContext &) {}
