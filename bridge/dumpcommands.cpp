#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

void KVyrAssistantToolAPI::getDumpState(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::startDump(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::stopDump(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::cleardumpdir(KxWebViewJSContext &) {}

void KVyrAssistantToolAPI::ondumpfileready()
{
    OfficeAssiant::publishAnswer(*this, QStringLiteral("freshcrshpageCallBack"),
                                 OfficeAssiant::resultSuccess);
}
