#include <QPointer>

#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"

using namespace OfficeAssiant;

namespace {

constexpr char searchView[] = "searchfile";
constexpr char crashView[] = "crash";
constexpr char environmentCheckView[] = "vyrrunningcheck";

} // namespace

void KVyrAssistantToolAPI::mousePress(KxWebViewJSContext &)
{
    emit sigMousePress();
}

void KVyrAssistantToolAPI::mouseRelease(KxWebViewJSContext &)
{
    emit sigMouseRelease();
}

void KVyrAssistantToolAPI::closemainwindow(KxWebViewJSContext &)
{
    emit sigCloseMainWindow();
}

void KVyrAssistantToolAPI::showminimized(KxWebViewJSContext &)
{
    emit sigShowMinimized();
}

void KVyrAssistantToolAPI::router(KxWebViewJSContext &context)
{
    const QString page = textArgument(context, QStringLiteral("page"));
    const QString type = textArgument(context, QStringLiteral("type"));
    auto &manager = KToolManager::instance();

    // What is told to page and shell may make the shell delete this page.
    const QPointer<KVyrAssistantToolAPI> alive(this);
    notifyHiddenTip(QStringLiteral("show"));
    if (type == QLatin1String(searchView))
        manager.fsSearch.RunEverythingDaemon();
    else if (type == QLatin1String(crashView) && manager.dumpHelp.isDumpSavingEnabled())
        manager.dumpHelp.startWatching();
    if (alive)
        emit sigChangeHtmlPage(page);
    if (alive)
        emit sigShowChildWindow(page);
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::closechildwindow(KxWebViewJSContext &context)
{
    auto &manager = KToolManager::instance();
    // As in router().
    const QPointer<KVyrAssistantToolAPI> alive(this);
    m_collectionPage.clear();
    manager.fsSearch.StopSearch();
    // The main page shows the tip, whichever page closes its view.
    if (KVyrAssistantToolAPI *mainPage = manager.mainPageBridge())
        mainPage->notifyHiddenTip(QStringLiteral("hide"));
    const QString type = textArgument(context, QStringLiteral("type"));
    if (type == QLatin1String(crashView))
        manager.dumpHelp.stopWatching();
    else if (type == QLatin1String(environmentCheckView))
        manager.envCheckThread.requestStop();
    if (alive)
        emit sigCloseChildWindow();
}
