#include "helio/tasks/taskoperations.h"

#include <QJsonDocument>
#include <QPointer>
#include <QThread>

#include <algorithm>
#include <array>

#include "helio/tasks/running/taskprogram.h"
#include "helio/tasks/tasks.h"
#include "texts/texts.h"

namespace helio {

namespace {

constexpr char prefix[] = "task.";
constexpr char cancel[] = "task.cancel";
constexpr char checkTask[] = "task.check";
constexpr char printTask[] = "task.print";
constexpr char requestTask[] = "task.request";
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
    /// It changes nothing of the user's.
    bool onlyLooks = false;
};

constexpr std::array<Task, 27> knownTasks{{
    {"task.report", FileQuestion::Kind::Save, "systeminfo", "txt", tasks::writeReport, false},
    {"task.save", FileQuestion::Kind::Save, "check-up", "txt", tasks::saveText, false},
    {"task.archive", FileQuestion::Kind::Save, "questionfeedback", "tar.gz", tasks::buildArchive,
     false},
    {checkTask, FileQuestion::Kind::None, "", "", tasks::checkEnvironment, true},
    {printTask, FileQuestion::Kind::Open, "", "", tasks::printDocument, false},
    {"task.fonts", FileQuestion::Kind::None, "", "", tasks::compareFonts, true},
    {"task.substitutes", FileQuestion::Kind::None, "", "", tasks::findSubstitutes, true},
    {"task.server", FileQuestion::Kind::None, "", "", tasks::askServer, true},
    {"task.system", FileQuestion::Kind::None, "", "", tasks::readSystem, true},
    {"task.input", FileQuestion::Kind::None, "", "", tasks::checkInput, true},
    {"task.shortcuts", FileQuestion::Kind::None, "", "", tasks::listShortcuts, true},
    {"task.associations", FileQuestion::Kind::None, "", "", tasks::readOpenings, true},
    {"task.associate", FileQuestion::Kind::None, "", "", tasks::repairOpenings, false},
    {"task.paths", FileQuestion::Kind::None, "", "", tasks::describePaths, true},
    {"task.choose", FileQuestion::Kind::Open, "", "", tasks::choosePath, false},
    {"task.listing", FileQuestion::Kind::Save, "permissions", "txt", tasks::saveText, false},
    {"task.dumps", FileQuestion::Kind::None, "", "", tasks::listDumps, true},
    {"task.dumpfolder", FileQuestion::Kind::None, "", "", tasks::openDumps, false},
    {"task.compare", FileQuestion::Kind::None, "", "", tasks::compareReports, true},
    {"task.start", FileQuestion::Kind::None, "", "", tasks::measureStart, true},
    {"task.updater", FileQuestion::Kind::None, "", "", tasks::setUpdaterValue, false},
    {"task.processes", FileQuestion::Kind::None, "", "", tasks::listProcesses, true},
    {"task.programs", FileQuestion::Kind::None, "", "", tasks::describePrograms, true},
    {"task.machine", FileQuestion::Kind::None, "", "", tasks::describeMachine, true},
    {requestTask, FileQuestion::Kind::None, "", "", tasks::timeRequest, true},
    {"task.preview", FileQuestion::Kind::None, "", "", tasks::previewFile, true},
    {"task.end", FileQuestion::Kind::None, "", "", tasks::endOneProcess, false},
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
    const bool wantsDocument = QLatin1String(task.name) == QLatin1String(printTask);
    const QString filter =
        texts::tr("Documents") + QStringLiteral(" (") + QLatin1String(documents) + QLatin1Char(')');
    return {task.asks, QLatin1String(task.file), QLatin1String(task.suffix),
            wantsDocument ? filter : QString()};
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

QString languageOf(const QJsonObject &arguments)
{
    return arguments.value(QStringLiteral("language")).toString();
}

/// The document to print, where the page has one already.
QString knownDocument(const QString &task, const QJsonObject &arguments)
{
    return task == QLatin1String(printTask) ? arguments.value(QStringLiteral("path")).toString()
                                            : QString();
}

/// Whether the desktop should show what the task has made: the page may show it itself.
bool isToBeOpened(const TaskEnd &end, const QJsonObject &arguments)
{
    return end.isToOpen && arguments.value(QStringLiteral("open")).toBool(true);
}

QJsonObject resultOf(const TaskEnd &end)
{
    QJsonObject result = end.answer;
    result.insert(QStringLiteral("end"), wordOf(end.kind));
    result.insert(QStringLiteral("reason"), end.reason);
    result.insert(QStringLiteral("file"), end.file);
    return result;
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
    for (const Task &task : knownTasks) {
        if (QLatin1String(task.name) != QLatin1String(requestTask) || canTimeRequests())
            names.append(QLatin1String(task.name));
    }
    return names;
}

bool TaskOperations::take(const QJsonObject &call, QObject *receiver, const Deliver &deliver)
{
    const QString name = call.value(QLatin1String("command")).toString();
    if (!name.startsWith(QLatin1String(prefix)))
        return false;
    const QJsonObject arguments = call.value(QLatin1String("args")).toObject();
    const Answer answer = [callback = call.value(QLatin1String("callback")).toString(),
                           listener = QPointer<QObject>(receiver),
                           deliver](const QJsonObject &envelope) {
        if (listener)
            deliver(callback,
                    QString::fromUtf8(QJsonDocument(envelope).toJson(QJsonDocument::Compact)));
    };
    if (name == QLatin1String(cancel))
        stop(arguments.value(QStringLiteral("task")).toString());
    if (taskNamed(name))
        start({name, arguments, answer});
    else
        answer(names().contains(name) ? envelope(recall(name))
                                      : error(QStringLiteral("no such operation: ") + name));
    return true;
}

void TaskOperations::stop(const QString &name)
{
    const auto running = m_running.find(name);
    if (running == m_running.end())
        return;
    *running->isCancelled = true;
    if (running->next)
        running->next->answer(envelope(resultOf(TaskEnd::cancelled())));
    running->next.reset();
}

void TaskOperations::start(const Call &call)
{
    const auto running = m_running.find(call.name);
    if (running == m_running.end()) {
        m_running.insert(call.name, {std::make_shared<std::atomic<bool>>(false), nullptr, {}});
        // Queued: it may show a dialog, and Chromium would be blocked until it returns.
        QMetaObject::invokeMethod(
            this, [this, call] { begin(call); }, Qt::QueuedConnection);
    } else if (taskNamed(call.name)->onlyLooks) {
        stop(call.name);
        running->next = call;
    } else {
        const texts::InLanguage language(languageOf(call.arguments));
        call.answer(envelope(resultOf(TaskEnd::failed(texts::tr("This is still under way.")))));
    }
}

void TaskOperations::begin(const Call &call)
{
    const Task &task = *taskNamed(call.name);
    const auto isCancelled = m_running.value(call.name).isCancelled;
    TaskRun run{
        call.arguments, {}, m_surroundings.programs, [isCancelled] { return isCancelled->load(); }};
    run.file = knownDocument(call.name, call.arguments);
    if (run.file.isEmpty() && task.asks != FileQuestion::Kind::None) {
        const texts::InLanguage language(languageOf(call.arguments));
        run.file = m_surroundings.askForFile(questionOf(task));
        if (run.file.isEmpty()) {
            finish(call, {TaskEnd::Kind::Dismissed, {}, {}, false, {}});
            return;
        }
    }
    const auto end = std::make_shared<TaskEnd>();
    QThread *thread = QThread::create([run, end, work = task.run] {
        const texts::InLanguage language(languageOf(run.arguments));
        *end = work(run);
    });
    m_running[call.name].thread = thread;
    connect(thread, &QThread::finished, this, [this, call, end, thread] {
        thread->deleteLater();
        finish(call, *end);
    });
    thread->start();
}

void TaskOperations::finish(const Call &call, const TaskEnd &end)
{
    const std::optional<Call> next = m_running.take(call.name).next;
    remember(call, end);
    QJsonObject result = resultOf(end);
    result.insert(QStringLiteral("opened"),
                  isToBeOpened(end, call.arguments) &&
                      m_surroundings.open(end.toOpen.isEmpty() ? end.file : end.toOpen));
    call.answer(envelope(result));
    if (next)
        start(*next);
}

void TaskOperations::remember(const Call &call, const TaskEnd &end)
{
    const QString &name = call.name;
    const bool isDone = end.kind == TaskEnd::Kind::Done;
    const bool wasChosen = knownDocument(name, call.arguments).isEmpty();
    if (isDone && wasChosen && name == QLatin1String(printTask))
        m_printed = end.answer.value(QStringLiteral("document")).toString();
    if (name != QLatin1String(checkTask))
        return;
    const QString key = call.arguments.value(QStringLiteral("type")).toString() + QLatin1Char('-') +
                        call.arguments.value(QStringLiteral("app")).toString();
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
