#pragma once

#include <QJsonObject>
#include <QObject>

#include <functional>
#include <memory>

#include "helio/headless/desktopopener.h"

namespace helio {

class HeadlessPage;
struct FileDialogRequest;

/// A shell without windows. It reports what happens as events: JSON objects whose "type" is
/// "callback" and, when tracing, also "signal", "dialog", "opened", "started" or "clipboard".
class HeadlessShell : public QObject
{
    Q_OBJECT

public:
    using EventSink = std::function<void(const QJsonObject &event)>;

    explicit HeadlessShell(EventSink sink, QObject *parent = nullptr);
    ~HeadlessShell() override;

    /// Also reports what the library does besides answering. Call it before start().
    void startTracing();

    /// Really opens what the library asks the desktop to open.
    void setOpensReally(bool opensReally);

    /// Makes the main page. False if the plug-in offers none that commands can be sent from.
    bool start();

    /// The page "main" or "child". The first call for the child page makes it.
    HeadlessPage *page(const QString &type);

signals:
    /// A later answer has come and its event has been reported.
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
