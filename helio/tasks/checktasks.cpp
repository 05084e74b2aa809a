#include <QFileInfo>
#include <QSettings>

#include <array>
#include <optional>

#include "helio/tasks/running/filemark.h"
#include "helio/tasks/running/taskprogram.h"
#include "helio/tasks/tasks.h"
#include "host/krt.h"
#include "qtversion/qtversion.h"
#include "texts/texts.h"

namespace helio::tasks {

namespace {

constexpr char checkTool[] = "/vyrEnvCheckTool";
/// Programs of this project write in this language; it is no setting of the session, which the
/// checks look at.
constexpr char languageVariable[] = "OFFICE_ASSISTANT_LANGUAGE";
constexpr char answerFile[] = "/tmp/vyrEnv.ini";
constexpr char answerGroup[] = "vyrEnv";
constexpr char printMode[] = "print";

/// The suite's program for documents with one of these suffixes.
struct Application
{
    const char *program;
    const char *suffixes;
};
constexpr std::array<Application, 3> applications{{
    {"vyr", " vyr vyt doc dot docx dotx docm dotm "},
    {"tbl", " tbl tbt xls xlt xlsx xlsm xltx xltm xlsb "},
    {"shw", " shd sht ppt pps pot pptx ppsx potx "},
}};

ProgramResult runTool(const TaskRun &run, const QStringList &arguments)
{
    TaskProgram tool{run.programs + QLatin1String(checkTool), arguments};
    tool.environment.insert(QLatin1String(languageVariable), run.text("language"));
    return runProgram(tool, run.isCancelled);
}

/// What the tool has answered; nothing if it has not.
std::optional<QString> toolAnswer(const QString &file, const QString &key)
{
    QSettings answers(file, QSettings::IniFormat);
    qtversion::useUtf8(answers);
    answers.beginGroup(QLatin1String(answerGroup));
    if (!answers.contains(key))
        return std::nullopt;
    return QString::fromUtf8(answers.value(key).toByteArray());
}

QString applicationFor(const QString &document)
{
    const QString suffix = QLatin1Char(' ') + QFileInfo(document).suffix() + QLatin1Char(' ');
    for (const Application &application : applications) {
        if (QLatin1String(application.suffixes).contains(suffix, Qt::CaseInsensitive))
            return QLatin1String(application.program);
    }
    return {};
}

} // namespace

TaskEnd checkEnvironment(const TaskRun &run)
{
    const QString file = krt::dirs::orvaneHome() + QLatin1String(answerFile);
    const FileMark before(file);
    const ProgramResult tool = runTool(run, {run.text("type"), run.text("app"), run.text("arg")});
    if (tool.isCancelled)
        return TaskEnd::cancelled();
    // The status of a tool that has answered may tell what it found.
    const auto value = tool.hasExited && !(FileMark(file) == before)
                           ? toolAnswer(file, run.text("app") + QLatin1Char('-') + run.text("type"))
                           : std::nullopt;
    if (!value)
        return TaskEnd::failed(tool.fault.isEmpty()
                                   ? texts::tr("The check tool ended without an answer.")
                                   : tool.fault);
    TaskEnd end;
    end.answer.insert(QStringLiteral("value"), *value);
    return end;
}

TaskEnd printDocument(const TaskRun &run)
{
    const QString application = applicationFor(run.file);
    if (application.isEmpty())
        return TaskEnd::failed(texts::tr("The suite has no program for this kind of document."));
    // The tool names the PDF after the part of the name before the first dot.
    const QString pdf = krt::dirs::orvaneHome() + QStringLiteral("/tmp/") +
                        QFileInfo(run.file).baseName() + QStringLiteral(".pdf");
    const FileMark before(pdf);
    const ProgramResult tool = runTool(run, {QLatin1String(printMode), application, run.file});
    if (tool.isCancelled)
        return TaskEnd::cancelled();
    if (!tool.fault.isEmpty())
        return TaskEnd::failed(tool.fault);
    const FileMark after(pdf);
    if (!after.isThere() || after == before)
        return TaskEnd::failed(texts::tr("The suite ended without a new PDF."));
    TaskEnd end;
    end.file = pdf;
    end.isToOpen = true;
    end.answer.insert(QStringLiteral("document"), run.file);
    return end;
}

} // namespace helio::tasks
