#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "update/configchange.h"

using namespace OfficeAssiant;

void KVyrAssistantToolAPI::getlogfile(KxWebViewJSContext &context)
{
    const auto log = KToolManager::instance().updateHelp.readLog();
    if (log)
        setBase64Result(context, *log);
    else
        setResult(context, resultError());
}

void KVyrAssistantToolAPI::getupdatesupport(KxWebViewJSContext &context)
{
    setResult(context, KToolManager::instance().updateHelp.isUpdateSupported());
}

void KVyrAssistantToolAPI::getupdateconfig(KxWebViewJSContext &context)
{
    const auto config = KToolManager::instance().updateHelp.readConfig();
    setResult(context, config ? QJsonValue(*config) : QJsonValue(resultError()));
}

void KVyrAssistantToolAPI::testupdate(KxWebViewJSContext &context)
{
    KToolManager::instance().updateHelp.startManualCheck();
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::clearlogfile(KxWebViewJSContext &context)
{
    KToolManager::instance().updateHelp.clearLogDirectory();
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::testdailyreport(KxWebViewJSContext &context)
{
    KToolManager::instance().updateHelp.startDailyReport();
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::testuninstallreport(KxWebViewJSContext &context)
{
    KToolManager::instance().updateHelp.startUninstallReport();
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::testinstallreport(KxWebViewJSContext &)
{
    // No result: unlike with testuninstallreport, the page does not wait for one.
    KToolManager::instance().updateHelp.startInstallReport();
}

void KVyrAssistantToolAPI::changeupdateconfig(KxWebViewJSContext &context)
{
    const auto change = parseConfigChange(textArgument(context, QStringLiteral("keyvalue")));
    if (!change) {
        setResult(context, resultError());
        return;
    }
    KToolManager::instance().updateHelp.setConfigValue(change->key, change->value);
    setResult(context, resultSuccess());
}
