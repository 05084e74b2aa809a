#include <QFileInfo>

#include "tests/helio/tasks/taskpage.h"
#include "tests/support/privatehome.h"

using testsupport::PrivateHome;
using testsupport::readFile;

namespace {

const QString check = QStringLiteral("task.check");
const QString print = QStringLiteral("task.print");
const QString report = QStringLiteral("task.report");

QJsonObject fontCheck()
{
    return {{QStringLiteral("type"), QStringLiteral("fonts")},
            {QStringLiteral("app"), QStringLiteral("vyr")},
            {QStringLiteral("arg"), QString()}};
}

/// Answers a check of fonts.
const QByteArray answering = R"(mkdir -p "$HOME/.local/share/Orvane/tmp"
printf '[vyrEnv]\n%s-%s=one is missing\n' "$2" "$1" > "$HOME/.local/share/Orvane/tmp/vyrEnv.ini")";

/// Writes "a report" to the file that the session's request chooses.
const QByteArray reporting = R"(read -r request
file=${request#*'"choose":["'}; file=${file%%'"'*}
printf 'a report\n' > "$file"
echo '{"type":"answer","result":"success"}')";

} // namespace

class TaskOperationsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void withoutTheCommandLineNothingIsOffered();
    void aCheckGivesWhatTheToolHasWritten();
    void aToolThatIsKilledShowsNoEarlierAnswer();
    void aToolThatWritesNothingShowsNoEarlierAnswer();
    void aToolIsToldTheLanguageOfTheWindow();
    void aLaterLookTakesThePlaceOfTheFirst();
    void aSecondReportIsRefused();
    void cancellingEndsTheToolAndItsPrograms();
    void theEndOfTheShellCancels();
    void printingGivesTheNewPdf();
    void aKnownDocumentIsPrintedWithoutADialog();
    void printingNeverGivesThePdfOfAnEarlierPrint();
    void aReportReplacesWhatWasThere();
    void aReportThatCannotBeWrittenSaysSo();
    void aReportCutShortIsNotSaved();
    void aCancelledDialogWritesNothing();
    void aCommandsAnswerArrivesWhole();
    void theInputMethodIsThatOfTheCommandLinesProcess();
};

void TaskOperationsTest::init()
{
    PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/vyrEnv.ini"),
                                     "[vyrEnv]\nvyr-fonts=last week\n");
}

void TaskOperationsTest::withoutTheCommandLineNothingIsOffered()
{
    TaskPage page;
    QVERIFY(page.operations.names().isEmpty());
    page.program(QStringLiteral("assistantctl"), ":");
    QVERIFY(page.operations.names().contains(check));
}

void TaskOperationsTest::aCheckGivesWhatTheToolHasWritten()
{
    TaskPage page;
    page.program(QStringLiteral("assistantctl"), ":");
    page.program(QStringLiteral("vyrEnvCheckTool"), answering + "\nexit 1");
    const QJsonObject result = page.run(check, fontCheck());
    QCOMPARE(word(result, "end"), QStringLiteral("done"));
    QCOMPARE(word(result, "value"), QStringLiteral("one is missing"));
    const QJsonObject kept =
        page.run(QStringLiteral("task.findings")).value(QStringLiteral("findings")).toObject();
    QCOMPARE(word(kept, "fonts-vyr"), QStringLiteral("one is missing"));
}

void TaskOperationsTest::aToolThatIsKilledShowsNoEarlierAnswer()
{
    TaskPage page;
    page.program(QStringLiteral("vyrEnvCheckTool"), answering + "\nkill -KILL $$");
    const QJsonObject result = page.run(check, fontCheck());
    QCOMPARE(word(result, "end"), QStringLiteral("failed"));
    QVERIFY(word(result, "reason").contains(QStringLiteral("signal")));
    QVERIFY(!result.contains(QStringLiteral("value")));
}

void TaskOperationsTest::aToolThatWritesNothingShowsNoEarlierAnswer()
{
    TaskPage page;
    page.program(QStringLiteral("vyrEnvCheckTool"), "echo 'no disk' >&2; exit 3");
    const QJsonObject result = page.run(check, fontCheck());
    QCOMPARE(word(result, "end"), QStringLiteral("failed"));
    QVERIFY(word(result, "reason").contains(QStringLiteral("status 3. no disk")));
    page.program(QStringLiteral("vyrEnvCheckTool"), "exit 0");
    QVERIFY(!word(page.run(check, fontCheck()), "reason").isEmpty());
}

void TaskOperationsTest::aToolIsToldTheLanguageOfTheWindow()
{
    TaskPage page;
    page.program(QStringLiteral("vyrEnvCheckTool"),
                 "set -- \"$1\" \"$2\"\n" + answering +
                     "\nsed -i \"s/one/$OFFICE_ASSISTANT_LANGUAGE/\" "
                     "\"$HOME/.local/share/Orvane/tmp/vyrEnv.ini\"");
    QJsonObject arguments = fontCheck();
    arguments.insert(QStringLiteral("language"), QStringLiteral("zh-CN"));
    QCOMPARE(word(page.run(check, arguments), "value"), QStringLiteral("zh-CN is missing"));
}

void TaskOperationsTest::aLaterLookTakesThePlaceOfTheFirst()
{
    TaskPage page;
    page.program(QStringLiteral("vyrEnvCheckTool"),
                 "[ \"$3\" = hang ] && exec sleep 600\n" + answering);
    QJsonObject hanging = fontCheck();
    hanging.insert(QStringLiteral("arg"), QStringLiteral("hang"));
    const int first = page.start(check, hanging);
    const int second = page.start(check, hanging);
    const int third = page.start(check, fontCheck());
    QCOMPARE(word(page.result(first), "end"), QStringLiteral("cancelled"));
    QCOMPARE(word(page.result(second), "end"), QStringLiteral("cancelled"));
    QCOMPARE(word(page.result(third), "value"), QStringLiteral("one is missing"));
}

void TaskOperationsTest::aSecondReportIsRefused()
{
    TaskPage page;
    page.program(QStringLiteral("assistantctl"), "exec sleep 600");
    page.chosen = PrivateHome::current().path() + QStringLiteral("/second.txt");
    const int first = page.start(report);
    const int second = page.start(report);
    QVERIFY(!word(page.result(second), "reason").isEmpty());
    page.start(QStringLiteral("task.cancel"), {{QStringLiteral("task"), report}});
    QCOMPARE(word(page.result(first), "end"), QStringLiteral("cancelled"));
    QVERIFY(!QFileInfo::exists(page.chosen));
}

void TaskOperationsTest::cancellingEndsTheToolAndItsPrograms()
{
    TaskPage page;
    const QString mark = PrivateHome::current().path() + QStringLiteral("/helper");
    page.program(QStringLiteral("vyrEnvCheckTool"),
                 "sleep 600 &\necho $! > \"$HOME/part\"; mv \"$HOME/part\" \"$HOME/helper\"\nwait");
    const int call = page.start(check, fontCheck());
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(mark), testsupport::longestWaitMs);
    page.start(QStringLiteral("task.cancel"), {{QStringLiteral("task"), check}});
    QCOMPARE(word(page.result(call), "end"), QStringLiteral("cancelled"));
    const QString helper =
        QStringLiteral("/proc/%1/cmdline").arg(QString::fromLatin1(readFile(mark).trimmed()));
    const auto runs = [helper] {
        QFile file(helper);
        return file.open(QIODevice::ReadOnly) && file.readAll().contains("sleep");
    };
    QTRY_VERIFY_WITH_TIMEOUT(!runs(), testsupport::longestWaitMs);
    QVERIFY(QFile::remove(mark));
}

void TaskOperationsTest::theEndOfTheShellCancels()
{
    const QString mark = PrivateHome::current().path() + QStringLiteral("/started");
    {
        TaskPage page;
        page.program(QStringLiteral("vyrEnvCheckTool"), ": > \"$HOME/started\"; exec sleep 600");
        page.start(check, fontCheck());
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(mark), testsupport::longestWaitMs);
    }
    QVERIFY(QFile::remove(mark));
}

void TaskOperationsTest::printingGivesTheNewPdf()
{
    TaskPage page;
    page.program(QStringLiteral("assistantctl"), ":");
    page.chosen = PrivateHome::current().writeFile(QStringLiteral("a $(b) 'c'.x.docx"), "x");
    page.program(QStringLiteral("vyrEnvCheckTool"),
                 "printf '%s|' \"$@\" > \"$HOME/.local/share/Orvane/tmp/a \\$(b) 'c'.pdf\"");
    const QJsonObject result = page.run(print);
    QCOMPARE(word(result, "end"), QStringLiteral("done"));
    QCOMPARE(page.opened, QStringList(word(result, "file")));
    QCOMPARE(QString::fromUtf8(readFile(word(result, "file"))),
             QStringLiteral("print|vyr|%1|").arg(page.chosen));
    QCOMPARE(word(page.run(QStringLiteral("task.printed")), "document"), page.chosen);
}

void TaskOperationsTest::aKnownDocumentIsPrintedWithoutADialog()
{
    TaskPage page;
    page.program(QStringLiteral("assistantctl"), ":");
    page.program(QStringLiteral("vyrEnvCheckTool"),
                 "echo new > \"$HOME/.local/share/Orvane/tmp/known.pdf\"");
    const QString document = PrivateHome::current().writeFile(QStringLiteral("known.docx"), "x");
    const QJsonObject result =
        page.run(print, {{QStringLiteral("path"), document}, {QStringLiteral("open"), false}});
    QCOMPARE(word(result, "end"), QStringLiteral("done"));
    QCOMPARE(word(result, "document"), document);
    QVERIFY(!result.value(QStringLiteral("opened")).toBool());
    QVERIFY(page.opened.isEmpty());
    // Feedback about a print is about the one that the user has chosen.
    QCOMPARE(word(page.run(QStringLiteral("task.printed")), "document"), QString());
}

void TaskOperationsTest::printingNeverGivesThePdfOfAnEarlierPrint()
{
    TaskPage page;
    page.chosen = PrivateHome::current().writeFile(QStringLiteral("b.docx"), "x");
    PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/b.pdf"), "earlier");
    page.program(QStringLiteral("vyrEnvCheckTool"), "exit 0");
    const QJsonObject result = page.run(print);
    QCOMPARE(word(result, "end"), QStringLiteral("failed"));
    QVERIFY(page.opened.isEmpty());
}

void TaskOperationsTest::aReportReplacesWhatWasThere()
{
    TaskPage page;
    page.program(QStringLiteral("assistantctl"), reporting);
    for (const QString &name :
         {QStringLiteral("a b.txt"), QStringLiteral("$(touch ran)`x`\"'[*];&.txt")}) {
        page.chosen = PrivateHome::current().writeFile(name, "what was there before, and longer");
        const QJsonObject result = page.run(report);
        QCOMPARE(word(result, "end"), QStringLiteral("done"));
        const QByteArray written = readFile(page.chosen);
        QVERIFY(written.startsWith("a report\n************suite-begin***********\r\n"));
        QVERIFY(written.endsWith("************suite-end***********\r\n"));
        QCOMPARE(page.opened.last(), page.chosen);
    }
}

void TaskOperationsTest::aReportThatCannotBeWrittenSaysSo()
{
    TaskPage page;
    page.program(QStringLiteral("assistantctl"), reporting);
    const QStringList places{QStringLiteral("/proc/report.txt"), QStringLiteral("/dev/full"),
                             PrivateHome::current().path() + QStringLiteral("/none/report.txt"),
                             PrivateHome::current().path()};
    for (const QString &place : places) {
        page.chosen = place;
        const QJsonObject result = page.run(report);
        QCOMPARE(word(result, "end"), QStringLiteral("failed"));
        QVERIFY2(word(result, "reason").startsWith(place), qPrintable(word(result, "reason")));
    }
    QVERIFY(page.opened.isEmpty());
}

void TaskOperationsTest::aReportCutShortIsNotSaved()
{
    TaskPage page;
    page.chosen = PrivateHome::current().writeFile(QStringLiteral("kept.txt"), "kept");
    QByteArray incomplete = reporting;
    incomplete.replace("\"success\"}", "\"success\",\"incomplete\":true}");
    page.program(QStringLiteral("assistantctl"), incomplete);
    QCOMPARE(word(page.run(report), "end"), QStringLiteral("failed"));
    QCOMPARE(readFile(page.chosen), QByteArray("kept"));
}

void TaskOperationsTest::aCancelledDialogWritesNothing()
{
    TaskPage page;
    QCOMPARE(word(page.run(report), "end"), QStringLiteral("dismissed"));
}

void TaskOperationsTest::aCommandsAnswerArrivesWhole()
{
    TaskPage page;
    page.program(QStringLiteral("assistantctl"),
                 "read -r request\ncase $request in *'\"urlpath\":\"$(x)\"'*) "
                 "echo '{\"type\":\"answer\",\"result\":\"parame error\"}';; esac");
    const QJsonObject result = page.run(QStringLiteral("task.server"),
                                        {{QStringLiteral("urlpath"), QStringLiteral("$(x)")}});
    QCOMPARE(word(result.value(QStringLiteral("envelope")).toObject(), "result"),
             QStringLiteral("parame error"));
}

void TaskOperationsTest::theInputMethodIsThatOfTheCommandLinesProcess()
{
    TaskPage page;
    page.program(QStringLiteral("assistantctl"),
                 "read -r request\ncase $request in *'\"command\":\"inputcheck\"'*) "
                 "echo '{\"type\":\"answer\",\"result\":\"ERR_OK\"}';; esac");
    const QJsonObject result = page.run(QStringLiteral("task.input"));
    QCOMPARE(word(result.value(QStringLiteral("envelope")).toObject(), "result"),
             QStringLiteral("ERR_OK"));
}

int main(int argc, char *argv[])
{
    const PrivateHome home;
    QCoreApplication application(argc, argv);
    TaskOperationsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_taskoperations.moc"
