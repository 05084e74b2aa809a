#include "bridge/answer.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "servercheck/documentservertester.h"

using namespace OfficeAssiant;

namespace {

/// The page compares this spelling.
constexpr char parameterError[] = "parame error";

} // namespace

void KVyrAssistantToolAPI::openremoveurlcheck(KxWebViewJSContext &context)
{
    const ServerTest test{textArgument(context, QStringLiteral("urlpath")),
                          textArgument(context, QStringLiteral("funcname")),
                          textArgument(context, QStringLiteral("reqheader")),
                          textArgument(context, QStringLiteral("reqtable"))};
    if (test.url.isEmpty() || test.functionName.isEmpty()) {
        setResult(context, QLatin1String(parameterError));
        return;
    }
    // The page may be closed before this returns; this object must not be used afterwards.
    if (const auto failure = testDocumentServer(test))
        setBase64Result(context, *failure);
    else
        setResult(context, resultSuccess());
}
