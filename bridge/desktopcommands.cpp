#include <QJsonObject>

#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "host/krt.h"

using namespace OfficeAssiant;

namespace {

void answerListing(KxWebViewJSContext &context, const AssociationListing &listing)
{
    switch (listing.outcome) {
    case AssociationListing::NoScript:
        // No "result": the page distinguishes this from a failed listing.
        break;
    case AssociationListing::NotStarted:
        setResult(context, resultError());
        break;
    case AssociationListing::Listed:
        setResult(context, listing.applications);
        break;
    }
}

} // namespace

void KVyrAssistantToolAPI::getdesktopiconfile(KxWebViewJSContext &context)
{
    const KDesktopHelp &desktop = KToolManager::instance().desktopHelp;
    QJsonObject state;
    state.insert(QStringLiteral("icon"), desktop.desktopFiles().join(QLatin1Char('|')));
    state.insert(QStringLiteral("mode"), desktop.componentMode());
    state.insert(QStringLiteral("chartboard"), krt::kcmc::support(QStringLiteral("ChartBoard")));
    state.insert(QStringLiteral("docket"), krt::kcmc::support(QStringLiteral("DocketComponent")));
    state.insert(QStringLiteral("fixedcomponent"),
                 krt::kcmc::support(QStringLiteral("FixedComponent")));
    setResult(context, state);
}

void KVyrAssistantToolAPI::fixfouricon(KxWebViewJSContext &context)
{
    KToolManager::instance().desktopHelp.restoreSeparateShortcuts();
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::fixoneicon(KxWebViewJSContext &context)
{
    KToolManager::instance().desktopHelp.restoreIntegratedShortcut();
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::getassoopen(KxWebViewJSContext &context)
{
    answerListing(context, KToolManager::instance().desktopHelp.defaultApplications());
}

void KVyrAssistantToolAPI::getassomime(KxWebViewJSContext &context)
{
    answerListing(context, KToolManager::instance().desktopHelp.mimeTypes());
}

void KVyrAssistantToolAPI::fileassorepair(KxWebViewJSContext &context)
{
    KToolManager::instance().desktopHelp.repairAssociations();
    setResult(context, resultSuccess());
}
