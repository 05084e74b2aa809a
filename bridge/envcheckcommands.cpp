#include <QDesktopServices>

#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "bridge/pagefile.h"

using namespace OfficeAssiant;

void KVyrAssistantToolAPI::vyrenvcheck(KxWebViewJSContext &context)
{
    KToolManager::instance().envCheckThread.check({textArgument(context, QStringLiteral("type")),
                                                   textArgument(context, QStringLiteral("app")),
                                                   textArgument(context, QStringLiteral("arg"))});
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::getvyrenvcheckedresult(KxWebViewJSContext &context)
{
    const QJsonObject results = KToolManager::instance().envCheckThread.keptResults();
    setResult(context, results.isEmpty() ? QJsonValue(resultError()) : QJsonValue(results));
}

void KVyrAssistantToolAPI::runfirefoxplugin(KxWebViewJSContext &context)
{
    // In the user's own browser: the check is about that browser's plug-in.
    QDesktopServices::openUrl(pageFile(QStringLiteral("vyrNpEnvCheck.html")));
    setResult(context, resultSuccess());
}
