#include <QProcess>
#include <QTest>

#include "doctor/journal/ending.h"
#include "doctor/journal/record.h"
#include "doctor/journal/store.h"
#include "tests/doctor/journal/repairtree.h"

using namespace changes;
using doctor::Journal;
using doctor::JournalEntry;
using doctor::JournalLimits;
using doctor::JournalResult;
using Outcome = JournalResult::Outcome;

/// The journal itself: what it lists, how much it keeps, what is wrong with it; and processes that
/// end.
class JournalTest : public QObject
{
    Q_OBJECT

private slots:
    void liesInTheStateDirectory();
    void listsWhatWasDone();
    void historyWritesNothing();
    void oldestRepairsGoFirst();
    void repairsOfLongAgoGo();
    void begunRepairsNeverGo();
    void numbersAreNotUsedAgain();
    void foreignChangesSurviveARecovery();
    void damagedRecordIsShownAndLeftAlone();
    void damagedBackupIsNoticed();
    void linesThatWereCutOffDoNotCount();
    void recordsReadAsTheyWereWritten();
    void journalThatOthersCanWriteIsNotTrusted();
    void processEndsLast();
    void stubbornProcessIsKilled();
    void anotherProcessOfTheSameNumberIsNotHit();
    void processesThatMayNotEndAreRefused();
};

namespace {

using State = JournalEntry::State;

int applied(const RepairTree &tree, const doctor::Change &change, const JournalLimits &limits = {})
{
    const JournalResult result = Journal(tree.journalPath(), limits).apply(plan({change}));
    if (result.outcome != Outcome::Applied)
        qFatal("not applied: %s", qPrintable(result.reason));
    return result.number;
}

QVector<int> numbers(const RepairTree &tree)
{
    QVector<int> numbers;
    for (const JournalEntry &entry : Journal(tree.journalPath()).history())
        numbers.append(entry.number);
    return numbers;
}

/// A repair that was stopped before its steps, as if the program had been killed.
void begin(const RepairTree &tree, const doctor::Action &action)
{
    doctor::Store store(tree.journalPath());
    doctor::Problem problem = store.makeDirectory();
    doctor::Record record;
    if (problem || !store.open(problem) || store.begin(record, action))
        qFatal("nothing begun");
    if (store.add(record.number, doctor::reachedLine(action.steps.size())))
        qFatal("no steps reached");
}

doctor::TreeStep writing(const RepairTree &tree, const QString &name, const QByteArray &from,
                         const QByteArray &to)
{
    doctor::TreeStep step;
    step.path = QFile::encodeName(tree.path(name));
    step.temporary = ".temporary";
    step.from.kind = step.to.kind = doctor::Node::Kind::File;
    step.from.content = doctor::Content(from);
    step.to.content = doctor::Content(to);
    return step;
}

QString recordPath(const RepairTree &tree, int number)
{
    return QStringLiteral("%1/%2/record").arg(tree.journalPath()).arg(number);
}

quint64 startOf(qint64 process)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    const QByteArray line = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return line.mid(line.lastIndexOf(')') + 2).split(' ').value(19).toULongLong();
}

doctor::Change end(qint64 process, quint64 start)
{
    doctor::Change change;
    change.kind = doctor::Change::Kind::End;
    change.process = process;
    change.processStart = start;
    return change;
}

/// A shell that says when it is ready.
bool start(QProcess &process, const QString &script)
{
    process.start(QStringLiteral("sh"), {QStringLiteral("-c"), script});
    return process.waitForStarted() && process.waitForReadyRead();
}

} // namespace

void JournalTest::liesInTheStateDirectory()
{
    qputenv("XDG_STATE_HOME", "/somewhere/state/");
    QCOMPARE(Journal::defaultDirectory(),
             QStringLiteral("/somewhere/state/office-assistant/repairs"));
    qputenv("XDG_STATE_HOME", "relative");
    QCOMPARE(Journal::defaultDirectory(),
             QDir::homePath() + QStringLiteral("/.local/state/office-assistant/repairs"));
    qunsetenv("XDG_STATE_HOME");
    QCOMPARE(Journal::defaultDirectory(),
             QDir::homePath() + QStringLiteral("/.local/state/office-assistant/repairs"));
}

void JournalTest::listsWhatWasDone()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("name %2F%"), "old\n");
    applied(tree, rewrite(file, "old\n", "new\n"));
    applied(tree, move(file, tree.path(QStringLiteral("aside"))));
    Journal journal(tree.journalPath());
    QCOMPARE(journal.undo(2).outcome, Outcome::Undone);
    const QVector<JournalEntry> history = journal.history();
    QCOMPARE(history.size(), 2);
    QCOMPARE(history[0].state, State::Applied);
    QCOMPARE(history[0].check, QStringLiteral("settings.broken"));
    QCOMPARE(history[0].repair, QStringLiteral("settings.reset"));
    QCOMPARE(history[0].paths, QStringList{file});
    QVERIFY(qAbs(history[0].time.secsTo(QDateTime::currentDateTime())) < 60);
    QCOMPARE(history[1].state, State::Undone);
    QCOMPARE(history[1].paths, (QStringList{file, tree.path(QStringLiteral("aside"))}));
}

void JournalTest::historyWritesNothing()
{
    const RepairTree tree;
    applied(tree, create(tree.path(QStringLiteral("file")), "x"));
    QVERIFY(QFile::remove(tree.journalPath() + QLatin1String("/lock")));
    Journal journal(tree.journalPath());
    QCOMPARE(journal.history().size(), 1);
    QVERIFY(journal.recover().isEmpty());
    QCOMPARE(QDir(tree.journalPath()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("1")});
}

void JournalTest::oldestRepairsGoFirst()
{
    const RepairTree tree;
    JournalLimits limits;
    limits.size = 40000;
    const QByteArray large(15000, 'x');
    for (int round = 0; round < 4; ++round)
        applied(tree, create(tree.path(QString::number(round)), large), limits);
    QCOMPARE(numbers(tree), (QVector<int>{3, 4}));
    const JournalResult result =
        Journal(tree.journalPath(), limits)
            .apply(plan({create(tree.path(QStringLiteral("huge")), QByteArray(50000, 'x'))}));
    QCOMPARE(result.outcome, Outcome::Refused);
    QCOMPARE(result.reason, QStringLiteral("The files are too large to be kept for undo."));
    QCOMPARE(numbers(tree), (QVector<int>{3, 4}));
}

void JournalTest::repairsOfLongAgoGo()
{
    const RepairTree tree;
    applied(tree, create(tree.path(QStringLiteral("one")), "x"));
    JournalLimits limits;
    limits.age = std::chrono::hours(0);
    QTest::qWait(5);
    applied(tree, create(tree.path(QStringLiteral("two")), "x"), limits);
    QCOMPARE(numbers(tree), QVector<int>{2});
}

void JournalTest::begunRepairsNeverGo()
{
    const RepairTree tree;
    tree.write(QStringLiteral("file"), "new\n");
    doctor::Action action;
    action.steps = {writing(tree, QStringLiteral("file"), "old\n", "new\n")};
    begin(tree, action);
    // Without its backup it cannot be taken back.
    const QString backup = tree.journalPath() + QLatin1String("/1/") +
                           QString::fromLatin1(action.steps[0].from.content->hash);
    QVERIFY(QFile::rename(backup, backup + QLatin1String("-away")));
    JournalLimits limits;
    limits.age = std::chrono::hours(0);
    const JournalResult result = Journal(tree.journalPath(), limits)
                                     .apply(plan({create(tree.path(QStringLiteral("x")), "x")}));
    QCOMPARE(result.outcome, Outcome::Refused);
    QCOMPARE(result.notes.size(), 1);
    QVERIFY(result.notes[0].contains(QLatin1String("could not be taken back yet")));
    QCOMPARE(Journal(tree.journalPath()).history()[0].state, State::Begun);
    QVERIFY(QFile::rename(backup + QLatin1String("-away"), backup));
    QCOMPARE(Journal(tree.journalPath()).recover().size(), 1);
    QCOMPARE(tree.read(QStringLiteral("file")), QByteArray("old\n"));
}

void JournalTest::numbersAreNotUsedAgain()
{
    const RepairTree tree;
    JournalLimits limits;
    limits.age = std::chrono::hours(0);
    for (int round = 1; round < 4; ++round) {
        QTest::qWait(2);
        QCOMPARE(applied(tree, create(tree.path(QString::number(round)), "x"), limits), round);
    }
}

void JournalTest::foreignChangesSurviveARecovery()
{
    const RepairTree tree;
    tree.write(QStringLiteral("file"), "of the user, after the program was killed\n");
    tree.write(QStringLiteral("other"), "new\n");
    doctor::Action action;
    action.steps = {writing(tree, QStringLiteral("other"), "old\n", "new\n"),
                    writing(tree, QStringLiteral("file"), "old\n", "new\n")};
    begin(tree, action);
    const QStringList notes = Journal(tree.journalPath()).recover();
    QCOMPARE(notes.size(), 2);
    QCOMPARE(notes[0],
             QStringLiteral("%1 stays as it is: somebody else changed it in the meantime.")
                 .arg(tree.path(QStringLiteral("file"))));
    QCOMPARE(tree.read(QStringLiteral("file")),
             QByteArray("of the user, after the program was killed\n"));
    QCOMPARE(tree.read(QStringLiteral("other")), QByteArray("old\n"));
    QCOMPARE(Journal(tree.journalPath()).history()[0].state, State::TakenBack);
}

void JournalTest::damagedRecordIsShownAndLeftAlone()
{
    const RepairTree tree;
    applied(tree, create(tree.path(QStringLiteral("file")), "x"));
    QFile record(recordPath(tree, 1));
    QVERIFY(record.open(QIODevice::ReadWrite) && record.seek(100) && record.write("\x7F") == 1);
    record.close();
    Journal journal(tree.journalPath());
    QCOMPARE(journal.history()[0].state, State::Damaged);
    QCOMPARE(journal.undo(1).reason, QStringLiteral("The record of repair 1 is damaged."));
    QCOMPARE(applied(tree, create(tree.path(QStringLiteral("other")), "x")), 2);
    QCOMPARE(numbers(tree), (QVector<int>{1, 2}));
}

void JournalTest::damagedBackupIsNoticed()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "old\n");
    applied(tree, rewrite(file, "old\n", "new\n"));
    const QString backup = tree.journalPath() + QLatin1String("/1/") +
                           QString::fromLatin1(doctor::Content("old\n").hash);
    QFile damaged(backup);
    QVERIFY(damaged.open(QIODevice::WriteOnly) && damaged.write("odd\n") == 4);
    damaged.close();
    const JournalResult result = Journal(tree.journalPath()).undo(1);
    QCOMPARE(result.outcome, Outcome::Failed);
    QCOMPARE(result.reason, QStringLiteral("The backup %1 is damaged.").arg(backup));
    QCOMPARE(tree.read(QStringLiteral("file")), QByteArray("new\n"));
}

void JournalTest::linesThatWereCutOffDoNotCount()
{
    const RepairTree tree;
    applied(tree, create(tree.path(QStringLiteral("file")), "x"));
    QFile record(recordPath(tree, 1));
    QVERIFY(record.open(QIODevice::ReadOnly));
    const QByteArray whole = record.readAll();
    const auto endAt = [&whole](int size) {
        const auto parsed = doctor::parsedRecord(whole.left(size));
        return parsed ? int(parsed->actions.last().end) : -1;
    };
    int end = -1;
    for (int size = 0; size <= whole.size(); ++size) {
        const auto parsed = doctor::parsedRecord(whole.left(size));
        QVERIFY(!parsed || !parsed->isDamaged);
        QVERIFY(endAt(size) >= end);
        end = endAt(size);
    }
    QCOMPARE(end, int(doctor::Action::End::Clean));
    const auto continued = doctor::parsedRecord(whole.left(whole.size() - 10) +
                                                doctor::endLine(doctor::Action::End::Clean));
    QCOMPARE(continued->actions.last().end, doctor::Action::End::Clean);
}

void JournalTest::recordsReadAsTheyWereWritten()
{
    doctor::Record record;
    record.check = QStringLiteral("check \u8BBE");
    record.repair = QStringLiteral("repair");
    doctor::Action action;
    action.time = 1234567890123;
    doctor::TreeStep step;
    step.path = "/home/\xff%2F/file name";
    step.temporary = ".temporary";
    step.from.kind = doctor::Node::Kind::File;
    step.from.content = doctor::Content("content");
    step.from.mode = 04755;
    step.from.owner = 4294967294U;
    step.from.group = 0;
    step.from.times = doctor::Times{-5, 1700000000123456789};
    step.from.attributes = doctor::Node::Attributes{{"user.\xfe", QByteArray("a\0b", 3)}};
    action.steps = {step};
    const auto parsed =
        doctor::parsedRecord(doctor::beginLine(record, action) + doctor::reachedLine(1));
    QVERIFY(parsed && !parsed->isDamaged);
    QCOMPARE(parsed->check, record.check);
    const doctor::Action &read = parsed->actions.first();
    QCOMPARE(read.time, action.time);
    QCOMPARE(read.reached, 1);
    const doctor::TreeStep &same = read.steps.first();
    QCOMPARE(same.path, step.path);
    QCOMPARE(same.temporary, step.temporary);
    QVERIFY(doctor::areSame(same.from, step.from));
    QCOMPARE(*same.from.owner, *step.from.owner);
    QCOMPARE(same.from.attributes->firstKey(), QByteArray("user.\xfe"));
    QCOMPARE(same.from.times->accessed, step.from.times->accessed);
    QCOMPARE(same.from.times->modified, step.from.times->modified);
    QCOMPARE(same.to.kind, doctor::Node::Kind::Absent);
}

void JournalTest::journalThatOthersCanWriteIsNotTrusted()
{
    const RepairTree tree;
    QVERIFY(QDir().mkpath(tree.journalPath()));
    ::chmod(QFile::encodeName(tree.journalPath()).constData(), 0777);
    const JournalResult result =
        Journal(tree.journalPath()).apply(plan({create(tree.path(QStringLiteral("file")), "x")}));
    QCOMPARE(result.outcome, Outcome::Refused);
    QCOMPARE(result.reason,
             QStringLiteral("The journal of repairs %1 can be changed by another user.")
                 .arg(tree.journalPath()));
    QVERIFY(tree.snapshot().isEmpty());
}

void JournalTest::processEndsLast()
{
    const RepairTree tree;
    const QString file = tree.path(QStringLiteral("file"));
    QProcess process;
    QVERIFY(
        start(process, QStringLiteral("trap 'test -e \"%1\" && echo ended; exit' TERM; echo ready; "
                                      "while :; do sleep 0.05; done")
                           .arg(file)));
    process.readAll();
    const JournalResult result =
        Journal(tree.journalPath())
            .apply(
                plan({end(process.processId(), startOf(process.processId())), create(file, "x")}));
    QCOMPARE(result.outcome, Outcome::Applied);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAll(), QByteArray("ended\n"));
    QCOMPARE(Journal(tree.journalPath()).undo(1).outcome, Outcome::Undone);
}

void JournalTest::stubbornProcessIsKilled()
{
    const RepairTree tree;
    QProcess process;
    QVERIFY(
        start(process, QStringLiteral("trap '' TERM; echo ready; while :; do sleep 0.05; done")));
    JournalLimits limits;
    limits.patience = std::chrono::milliseconds(100);
    applied(tree, end(process.processId(), startOf(process.processId())), limits);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
}

void JournalTest::anotherProcessOfTheSameNumberIsNotHit()
{
    QProcess process;
    QVERIFY(start(process, QStringLiteral("echo ready; read line")));
    const qint64 number = process.processId();
    const quint64 started = startOf(number);
    QVERIFY(started > 1);
    QVERIFY(!doctor::endProcess({number, started - 1}, std::chrono::seconds(5)));
    QVERIFY(!process.waitForFinished(200));
    process.write("\n");
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QVERIFY(!doctor::endProcess({number, started}, std::chrono::seconds(5)));
}

void JournalTest::processesThatMayNotEndAreRefused()
{
    const RepairTree tree;
    const QString file = tree.path(QStringLiteral("file"));
    for (const auto &change :
         {end(1, 1), end(0, 1), end(-5, 1), end(::getpid(), startOf(::getpid())), end(4711, 0)}) {
        const JournalResult result =
            Journal(tree.journalPath()).apply(plan({create(file, "x"), change}));
        QCOMPARE(result.outcome, Outcome::Refused);
        QVERIFY(result.reason.contains(QLatin1String("is not one to be ended.")));
    }
    QVERIFY(!QFileInfo::exists(file));
}

QTEST_GUILESS_MAIN(JournalTest)
#include "tst_journal.moc"
