#include <QClipboard>
#include <QEventLoop>
#include <QGuiApplication>
#include <QPointer>
#include <QTimer>

#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "host/krt.h"

using namespace OfficeAssiant;

namespace {

/// How long a minimised window takes to disappear from the screen.
constexpr int minimiseMs = 300;

constexpr char preloadLauncher[] = "quickstartoffice";
constexpr char screenRecorder[] = "/addons/vyrassistanttool/screencap/screencap";
constexpr char editingTool[] = "/eptools";

void start(const QString &program, const QStringList &arguments)
{
    krt::ksafe::KProcess::StartDetach(program, arguments, QString(), nullptr);
}

QString inResources(const QString &path)
{
    return krt::dirs::resources(QStringLiteral(""), nullptr) + path;
}

} // namespace

void KVyrAssistantToolAPI::stoppreload(KxWebViewJSContext &context)
{
    start(QLatin1String(preloadLauncher), {QStringLiteral("stop"), QStringLiteral("false")});
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::restartpreload(KxWebViewJSContext &context)
{
    start(QLatin1String(preloadLauncher), {QStringLiteral("restart"), QStringLiteral("false")});
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::screenshots(KxWebViewJSContext &context)
{
    // The page may be closed while the loop runs.
    const QPointer<KVyrAssistantToolAPI> alive(this);
    emit sigShowMinimized();
    QEventLoop loop;
    QTimer::singleShot(minimiseMs, &loop, &QEventLoop::quit);
    loop.exec();
    if (const auto grab = KToolManager::instance().screenGrab())
        grab();
    setResult(context, resultSuccess());
    if (alive)
        emit sigShowNormal();
}

void KVyrAssistantToolAPI::recordscreen(KxWebViewJSContext &context)
{
    start(inResources(QLatin1String(screenRecorder)), {});
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::contentreplace(KxWebViewJSContext &context)
{
    start(inResources(QLatin1String(editingTool)), {QStringLiteral("-replacefile")});
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::apilog(KxWebViewJSContext &context)
{
    start(inResources(QLatin1String(editingTool)), {QStringLiteral("-apilog")});
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::copytoclipboard(KxWebViewJSContext &context)
{
    QGuiApplication::clipboard()->setText(textArgument(context, QStringLiteral("verification")));
    setResult(context, resultSuccess());
}
