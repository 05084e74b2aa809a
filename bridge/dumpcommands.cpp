#include <QJsonObject>

#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

using namespace OfficeAssiant;

namespace {

/// The page's function that refreshes the list of dumps.
constexpr char freshDumpCallback[] = "freshcrshpageCallBack";

} // namespace

void KVyrAssistantToolAPI::getDumpState(KxWebViewJSContext &context)
{
    const KDumpHelp &dumps = KToolManager::instance().dumpHelp;
    setResult(context, QJsonObject{{QStringLiteral("enable"), dumps.isDumpSavingEnabled()},
                                   {QStringLiteral("feedback"), dumps.hasRecentDump()}});
}

void KVyrAssistantToolAPI::startDump(KxWebViewJSContext &context)
{
    KDumpHelp &dumps = KToolManager::instance().dumpHelp;
    dumps.startWatching();
    dumps.setDumpSaving(true);
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::stopDump(KxWebViewJSContext &context)
{
    KDumpHelp &dumps = KToolManager::instance().dumpHelp;
    dumps.stopWatching();
    dumps.setDumpSaving(false);
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::cleardumpdir(KxWebViewJSContext &context)
{
    KToolManager::instance().dumpHelp.clearDumpDirectory();
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::ondumpfileready()
{
    publishAnswer(*this, QLatin1String(freshDumpCallback), resultSuccess());
}
