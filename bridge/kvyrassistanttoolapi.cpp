#include "bridge/kvyrassistanttoolapi.h"

#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "host/kxwebviewcontainer.h"

using OfficeAssiant::KToolManager;

KVyrAssistantToolAPI::KVyrAssistantToolAPI(KxWebViewContainer *container)
    : KxWebViewAsynJSObject(container, container)
{
    auto &manager = KToolManager::instance();
    connect(&manager.fsSearch, &KFsSearch::SigGetContentHasKey, this,
            &KVyrAssistantToolAPI::onsearchfileresult);
    connect(&manager.fsSearch, &KFsSearch::searchFinished, this,
            &KVyrAssistantToolAPI::onsearchfinished);
    connect(&manager.dumpHelp, &OfficeAssiant::KDumpHelp::sigdumpfileready, this,
            &KVyrAssistantToolAPI::ondumpfileready);
}

KVyrAssistantToolAPI::~KVyrAssistantToolAPI()
{
    KToolManager::forgetBridge(this);
}

void KVyrAssistantToolAPI::notifyHiddenTip(const QString &text)
{
    OfficeAssiant::publishAnswer(*this, QStringLiteral("hiddentipCallBack"), text);
}
