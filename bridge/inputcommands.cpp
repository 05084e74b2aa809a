#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

using namespace OfficeAssiant;

void KVyrAssistantToolAPI::inputcheck(KxWebViewJSContext &context)
{
    setResult(context, KToolManager::instance().inputChecker.check());
}
