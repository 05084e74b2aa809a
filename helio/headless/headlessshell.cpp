#include "helio/headless/headlessshell.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonValue>

#include "helio/headless/dialoganswers.h"
#include "helio/headless/headlessbrowser.h"
#include "helio/headless/headlesspage.h"
#include "helio/runtime/border/browsermaker.h"
#include "helio/runtime/hostevents.h"
#include "helio/runtime/windowsignals.h"

namespace helio {

HeadlessShell::HeadlessShell(EventSink sink, QObject *parent)
    : QObject(parent), m_sink(std::move(sink))
{
    setBrowserMaker([](QWidget *owner, KxWebViewCefJsApiFlag) -> KHelioBrowserWidgetBase * {
        return new HeadlessBrowser(owner);
    });
}

HeadlessShell::~HeadlessShell() = default;

void HeadlessShell::startTracing()
{
    m_tracing = true;
    connect(&DialogAnswers::instance(), &DialogAnswers::answered, this,
            &HeadlessShell::traceDialog);
    connect(&m_opener, &DesktopOpener::opened, this, [this](const QUrl &url) {
        m_sink({{QStringLiteral("type"), QStringLiteral("opened")},
                {QStringLiteral("url"), url.toString()}});
    });
    connect(&HostEvents::instance(), &HostEvents::programStarting, this,
            &HeadlessShell::traceProgram);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        m_sink({{QStringLiteral("type"), QStringLiteral("clipboard")},
                {QStringLiteral("text"), QGuiApplication::clipboard()->text()}});
    });
}

void HeadlessShell::setOpensReally(bool opensReally)
{
    m_opener.setOpensReally(opensReally);
}

bool HeadlessShell::start()
{
    m_main = makePage(QStringLiteral("main"));
    return m_main->isValid();
}

HeadlessPage *HeadlessShell::page(const QString &type)
{
    if (type != QLatin1String("child"))
        return m_main.get();
    if (!m_child)
        m_child = makePage(type);
    return m_child.get();
}

std::unique_ptr<HeadlessPage> HeadlessShell::makePage(const QString &type)
{
    auto page = std::make_unique<HeadlessPage>(type);
    connect(page.get(), &HeadlessPage::callbackCalled, this,
            [this, type](const QString &callback, const QJsonObject &answer) {
                m_sink({{QStringLiteral("type"), QStringLiteral("callback")},
                        {QStringLiteral("page"), type},
                        {QStringLiteral("callback"), callback},
                        {QStringLiteral("result"), answer.value(QLatin1String("result"))}});
                emit callbackCalled(type, callback);
            });
    if (m_tracing && page->isValid())
        traceSignals(page.get());
    return page;
}

void HeadlessShell::traceSignals(HeadlessPage *page)
{
    const auto *window = new WindowSignals(page->widget());
    connect(window, &WindowSignals::forwarded, this,
            [this, type = page->type()](const QString &name, const QStringList &arguments) {
                m_sink({{QStringLiteral("type"), QStringLiteral("signal")},
                        {QStringLiteral("page"), type},
                        {QStringLiteral("signal"), name},
                        {QStringLiteral("args"), QJsonArray::fromStringList(arguments)}});
            });
}

void HeadlessShell::traceDialog(const FileDialogRequest &request, const QString &chosen)
{
    m_sink(
        {{QStringLiteral("type"), QStringLiteral("dialog")},
         {QStringLiteral("mode"), request.isSave ? QStringLiteral("save") : QStringLiteral("open")},
         {QStringLiteral("caption"), request.caption},
         {QStringLiteral("directory"), request.directory},
         {QStringLiteral("name"), request.name},
         {QStringLiteral("filters"), QJsonArray::fromStringList(request.filters)},
         {QStringLiteral("chosen"), chosen.isEmpty() ? QJsonValue() : QJsonValue(chosen)}});
}

void HeadlessShell::traceProgram(const QString &program, const QStringList &arguments,
                                 const QString &workingDirectory, bool detached)
{
    m_sink({{QStringLiteral("type"), QStringLiteral("started")},
            {QStringLiteral("program"), program},
            {QStringLiteral("arguments"), QJsonArray::fromStringList(arguments)},
            {QStringLiteral("workingDirectory"), workingDirectory},
            {QStringLiteral("detached"), detached}});
}

} // namespace helio
