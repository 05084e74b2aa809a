#pragma once

#include <QJsonObject>
#include <QObject>

#include <functional>
#include <memory>

#include "helio/headless/desktopopener.h"

namespace helio {

class HeadlessPage;
struct FileDialogRequest;

/// The plug-in's pages without a window. Everything that happens is reported as an event: a JSON
/// object whose "type" is "callback" or, when tracing, "signal", "dialog", "opened", "started" or
/// "clipboard".
class HeadlessShell : public QObject
{
    Q_OBJECT

public:
    using EventSink = std::function<void(const QJsonObject &event)>;

    explicit HeadlessShell(EventSink sink, QObject *parent = nullptr);
    ~HeadlessShell() override;

    /// Also reports what the library does beyond answering.
    void startTracing();

    /// Really opens what the library asks the desktop to open.
    void setOpensReally(bool opensReally);

    /// Makes the main page. False when the plug-in offers none that works.
    bool start();

    /// The page "main" or "child"; the child page is made when it is first asked for.
    HeadlessPage *page(const QString &type);

signals:
    /// A later answer came; its event has been reported.
    void callbackCalled(const QString &page, const QString &callback);

private:
    std::unique_ptr<HeadlessPage> makePage(const QString &type);
    void traceSignals(HeadlessPage *page);
    void traceDialog(const FileDialogRequest &request, const QString &chosen);
    void traceProgram(const QString &program, const QStringList &arguments,
                      const QString &workingDirectory, bool detached);

    EventSink m_sink;
    bool m_tracing = false;
    DesktopOpener m_opener;
    std::unique_ptr<HeadlessPage> m_main;
    std::unique_ptr<HeadlessPage> m_child;
};

} // namespace helio
