#pragma once

#include <QJsonObject>
#include <QString>

#include <functional>

namespace helio {

/// One run of a task, which has a thread of its own.
struct TaskRun
{
    QJsonObject arguments;
    /// What the user chose in the task's dialog; empty for a task without one.
    QString file;
    /// The directory of the suite's programs and of the command line.
    QString programs;
    std::function<bool()> isCancelled;

    QString text(const char *argument) const
    {
        return arguments.value(QLatin1String(argument)).toString();
    }
};

/// How a task has ended.
struct TaskEnd
{
    enum class Kind {
        Done, ///< and read back
        Failed,
        Cancelled,
        Dismissed ///< no file was chosen
    };

    Kind kind = Kind::Done;
    /// Why it failed, for people.
    QString reason;
    /// What was written.
    QString file;
    bool isToOpen = false;
    /// What else the page is told.
    QJsonObject answer;
    /// What is opened in place of the file.
    QString toOpen = {};

    static TaskEnd failed(const QString &reason) { return {Kind::Failed, reason, {}, false, {}}; }
    static TaskEnd cancelled() { return {Kind::Cancelled, {}, {}, false, {}}; }
};

} // namespace helio
