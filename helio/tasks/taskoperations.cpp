#include "helio/tasks/taskoperations.h"

#include <QJsonDocument>
#include <QPointer>
#include <QThread>

#include <algorithm>
#include <array>

#include "helio/tasks/taskprogram.h"
#include "helio/tasks/tasks.h"
#include "texts/texts.h"

namespace helio {

namespace {

constexpr char prefix[] = "task.";
constexpr char cancel[] = "task.cancel";
constexpr char checkTask[] = "task.check";
constexpr char printTask[] = "task.print";
/// Answered at once.
constexpr char findings[] = "task.findings";
constexpr char printed[] = "task.printed";

constexpr char documents[] =
    "*.vyr *.vyt *.doc *.dot *.docx *.dotx *.docm *.dotm *.tbl *.tbt *.xls "
    "*.xlt *.xlsx *.xlsm *.xltx *.xltm *.xlsb *.shd *.sht *.ppt *.pps "
    "*.pot *.pptx *.ppsx *.potx";

struct Task
{
    const char *name;
    FileQuestion::Kind asks;
    /// The name of a new file, and its suffix.
    const char *file;
    const char *suffix;
    TaskEnd (*run)(const TaskRun &run);
};

constexpr std::array<Task, 9> knownTasks{{
    {"task.report", FileQuestion::Kind::Save, "systeminfo", "txt", tasks::writeReport},
    {"task.archive", FileQuestion::Kind::Save, "questionfeedback", "tar.gz", tasks::buildArchive},
    {checkTask, FileQuestion::Kind::None, "", "", tasks::checkEnvironment},
    {printTask, FileQuestion::Kind::Open, "", "", tasks::printDocument},
    {"task.fonts", FileQuestion::Kind::None, "", "", tasks::compareFonts},
    {"task.substitutes", FileQuestion::Kind::None, "", "", tasks::findSubstitutes},
    {"task.server", FileQuestion::Kind::None, "", "", tasks::askServer},
    {"task.system", FileQuestion::Kind::None, "", "", tasks::readSystem},
    {"task.updater", FileQuestion::Kind::None, "", "", tasks::setUpdaterValue},
}};

const Task *taskNamed(const QString &name)
{
    const auto *const found =
        std::find_if(knownTasks.begin(), knownTasks.end(),
                     [&name](const Task &task) { return name == QLatin1String(task.name); });
    return found == knownTasks.end() ? nullptr : found;
}

FileQuestion questionOf(const Task &task)
{
    return {task.asks, QLatin1String(task.file), QLatin1String(task.suffix),
            texts::tr("Documents") + QStringLiteral(" (") + QLatin1String(documents) +
                QLatin1Char(')')};
}

QString wordOf(TaskEnd::Kind kind)
{
    switch (kind) {
    case TaskEnd::Kind::Done:
        return QStringLiteral("done");
    case TaskEnd::Kind::Failed:
        return QStringLiteral("failed");
    case TaskEnd::Kind::Cancelled:
        return QStringLiteral("cancelled");
    case TaskEnd::Kind::Dismissed:
        break;
    }
    return QStringLiteral("dismissed");
}

QJsonObject envelope(const QJsonObject &result)
{
    return {{QStringLiteral("result"), result}};
}

QJsonObject error(const QString &text)
{
    return {{QStringLiteral("error"), text}};
}

} // namespace

TaskOperations::TaskOperations(TaskSurroundings surroundings, QObject *parent)
    : QObject(parent), m_surroundings(std::move(surroundings))
{
}

TaskOperations::~TaskOperations()
{
    for (const Running &running : qAsConst(m_running))
        *running.isCancelled = true;
    for (const Running &running : qAsConst(m_running)) {
        if (!running.thread)
            continue;
        running.thread->wait();
        delete running.thread;
    }
}

QStringList TaskOperations::names() const
{
    if (!canSendCommands(m_surroundings.programs))
        return {};
    QStringList names{QLatin1String(cancel), QLatin1String(findings), QLatin1String(printed)};
    for (const Task &task : knownTasks)
        names.append(QLatin1String(task.name));
    return names;
}

bool TaskOperations::take(const QString &call, QObject *receiver, const Deliver &deliver)
{
    // Most calls are the plug-in's, and need not be parsed twice.
    if (!call.contains(QLatin1String(prefix)))
        return false;
    const QJsonObject parsed = QJsonDocument::fromJson(call.toUtf8()).object();
    const QString name = parsed.value(QStringLiteral("command")).toString();
    if (!name.startsWith(QLatin1String(prefix)))
        return false;
    const QJsonObject arguments = parsed.value(QStringLiteral("args")).toObject();
    const Answer answer = [callback = parsed.value(QStringLiteral("callback")).toString(),
                           listener = QPointer<QObject>(receiver),
                           deliver](const QJsonObject &envelope) {
        if (listener)
            deliver(callback,
                    QString::fromUtf8(QJsonDocument(envelope).toJson(QJsonDocument::Compact)));
    };
    if (name == QLatin1String(cancel)) {
        const auto running =
            m_running.constFind(arguments.value(QStringLiteral("task")).toString());
        if (running != m_running.constEnd())
            *running->isCancelled = true;
    }
    if (!taskNamed(name)) {
        answer(names().contains(name) ? envelope(recall(name))
                                      : error(QStringLiteral("no such operation: ") + name));
    } else if (m_running.contains(name)) {
        answer(error(QStringLiteral("this is running already: ") + name));
    } else {
        m_running.insert(name, {std::make_shared<std::atomic<bool>>(false), nullptr});
        // Queued: it may show a dialog, and Chromium would be blocked until it returns.
        QMetaObject::invokeMethod(
            this, [this, name, arguments, answer] { begin(name, arguments, answer); },
            Qt::QueuedConnection);
    }
    return true;
}

void TaskOperations::begin(const QString &name, const QJsonObject &arguments, const Answer &answer)
{
    const Task &task = *taskNamed(name);
    const auto isCancelled = m_running.value(name).isCancelled;
    TaskRun run{
        arguments, {}, m_surroundings.programs, [isCancelled] { return isCancelled->load(); }};
    if (task.asks != FileQuestion::Kind::None) {
        const texts::InLanguage language(run.text("language"));
        run.file = m_surroundings.askForFile(questionOf(task));
        if (run.file.isEmpty()) {
            finish(name, arguments, {TaskEnd::Kind::Dismissed, {}, {}, false, {}}, answer);
            return;
        }
    }
    const auto end = std::make_shared<TaskEnd>();
    QThread *thread = QThread::create([run, end, work = task.run] {
        const texts::InLanguage language(run.text("language"));
        *end = work(run);
    });
    m_running[name].thread = thread;
    connect(thread, &QThread::finished, this, [this, name, arguments, end, answer, thread] {
        thread->deleteLater();
        finish(name, arguments, *end, answer);
    });
    thread->start();
}

void TaskOperations::finish(const QString &name, const QJsonObject &arguments, TaskEnd end,
                            const Answer &answer)
{
    m_running.remove(name);
    remember(name, arguments, end);
    QJsonObject result = end.answer;
    result.insert(QStringLiteral("end"), wordOf(end.kind));
    result.insert(QStringLiteral("reason"), end.reason);
    result.insert(QStringLiteral("file"), end.file);
    result.insert(QStringLiteral("opened"), end.isToOpen && m_surroundings.open(end.file));
    answer(envelope(result));
}

void TaskOperations::remember(const QString &name, const QJsonObject &arguments, const TaskEnd &end)
{
    const bool isDone = end.kind == TaskEnd::Kind::Done;
    if (isDone && name == QLatin1String(printTask))
        m_printed = end.answer.value(QStringLiteral("document")).toString();
    if (name != QLatin1String(checkTask))
        return;
    const QString key = arguments.value(QStringLiteral("type")).toString() + QLatin1Char('-') +
                        arguments.value(QStringLiteral("app")).toString();
    // What an earlier run has found is no answer of this one.
    m_findings.remove(key);
    if (isDone)
        m_findings.insert(key, end.answer.value(QStringLiteral("value")));
}

QJsonObject TaskOperations::recall(const QString &name) const
{
    if (name == QLatin1String(findings))
        return {{QStringLiteral("findings"), m_findings}};
    if (name == QLatin1String(printed))
        return {{QStringLiteral("document"), m_printed}};
    return {};
}

} // namespace helio
