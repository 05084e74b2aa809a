#pragma once

#include <QJsonObject>
#include <QList>

#include "helio/headless/headlessshell.h"

namespace testsupport {

/// Runs the pages of the plug-in that is linked into the test and records all events.
class RecordingShell
{
public:
    /// Registers the page with the shell and makes the main page.
    RecordingShell();
    ~RecordingShell();

    /// Sends a command from the page "main" or "child"; @p choices answer its file dialogs. Gives
    /// the envelope: {"result": …}, {} or {"error": …}.
    QJsonObject call(const QString &command, const QJsonObject &args = {},
                     const QStringList &choices = {}, const QString &page = QStringLiteral("main"));

    /// The events so far, in order.
    const QList<QJsonObject> &events() const;

    /// The events of that type so far, in order.
    QList<QJsonObject> events(const QString &type) const;

    /// Waits for an event of that type, and of that callback if one is named, since the last call
    /// of forget(). An empty object if none came in time.
    QJsonObject waitFor(const QString &type, const QString &callback = QString());

    void forget();

    helio::HeadlessShell &shell();

private:
    QList<QJsonObject> m_events;
    helio::HeadlessShell m_shell;
};

} // namespace testsupport
