#pragma once

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

class QThread;

namespace helio {

struct TaskEnd;

/// What a task asks its user for before it begins.
struct FileQuestion
{
    enum class Kind {
        None,
        Open,
        Save
    };

    Kind kind = Kind::None;
    /// The name that a new file has at first.
    QString name;
    /// What a new file's name ends with.
    QString suffix;
    /// Patterns of the files that can be opened.
    QString filter;
};

/// What tasks need of their shell.
struct TaskSurroundings
{
    /// The directory of the suite's programs and of the command line.
    QString programs;
    /// Gives a path, or nothing if the user cancels. It may run an event loop.
    std::function<QString(const FileQuestion &question)> askForFile;
    /// Whether a file could be opened with the desktop's program for it.
    std::function<bool(const QString &path)> open;
};

/// Operations that take long, which a shell offers to its pages beside the plug-in's commands;
/// docs/host.md lists them. Each has a thread of its own, runs once at a time and can be cancelled.
/// One that only looks gives way to a later start, as its page may be gone.
class TaskOperations : public QObject
{
    Q_OBJECT

public:
    /// Called with the name of a page's callback and the JSON for it, on this object's thread.
    using Deliver = std::function<void(const QString &callback, const QString &json)>;

    explicit TaskOperations(TaskSurroundings surroundings, QObject *parent = nullptr);
    /// Cancels what runs, and waits for that.
    ~TaskOperations() override;

    /// What pages may call: nothing where the command line is missing.
    QStringList names() const;

    /// Starts the operation that a page's @p call names, and returns at once. The answer is
    /// delivered as long as @p receiver lives.
    /// @return false if the call is none of these: it is for the plug-in
    bool take(const QJsonObject &call, QObject *receiver, const Deliver &deliver);

private:
    using Answer = std::function<void(const QJsonObject &envelope)>;
    struct Call
    {
        QString name;
        QJsonObject arguments;
        Answer answer;
    };
    struct Running
    {
        std::shared_ptr<std::atomic<bool>> isCancelled;
        /// Null while the user is asked for a file.
        QThread *thread = nullptr;
        /// Begins after this one.
        std::optional<Call> next;
    };

    void stop(const QString &name);
    void start(const Call &call);
    void begin(const Call &call);
    void finish(const Call &call, const TaskEnd &end);
    void remember(const Call &call, const TaskEnd &end);
    /// What is known without a task.
    QJsonObject recall(const QString &name) const;

    TaskSurroundings m_surroundings;
    QMap<QString, Running> m_running;
    /// The last answers of the check tool, keyed check-component.
    QJsonObject m_findings;
    /// The document that was printed last.
    QString m_printed;
};

} // namespace helio
