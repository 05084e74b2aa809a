#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include "doctor/format/checkreader.h"
#include "doctor/runner/runner.h"

using namespace doctor;

namespace {

/// A machine with a home directory of its own and nothing else.
class PrivateMachine
{
public:
    PrivateMachine()
    {
        m_machine.root = m_directory.path();
        m_machine.user = geteuid();
        m_machine.environment = {{QStringLiteral("HOME"), QStringLiteral("/home/mira")}};
        write("/etc/passwd",
              "mira:x:" + QByteArray::number(geteuid()) + ":100::/home/mira:/bin/sh\n");
    }

    void write(const char *path, const QByteArray &content)
    {
        const QString located = m_machine.located(QLatin1String(path));
        QDir().mkpath(QFileInfo(located).path());
        QFile file(located);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    const Machine &machine() const { return m_machine; }

private:
    QTemporaryDir m_directory;
    Machine m_machine;
};

CheckDefinition checkOf(const QByteArray &look, const QByteArray &text, const QByteArray &more = {})
{
    const CheckFile file =
        readChecks(R"({"id": "one", "title": "One", )" + more + R"("look": )" + look +
                       R"(, "finding": {"state": "bad", "text": ")" + text + R"("}})",
                   QStringLiteral("one.json"));
    for (const Mistake &mistake : file.mistakes)
        qWarning().noquote() << mistake.line << mistake.column << mistake.message;
    return file.checks.value(0);
}

CheckResult resultOf(const CheckDefinition &check, const Machine &machine)
{
    CheckResult only;
    runChecks({check}, machine, QStringLiteral("en"), [&only](const CheckResult &result) {
        only = result;
        return true;
    });
    return only;
}

QStringList textsOf(const CheckResult &result)
{
    QStringList texts{result.reason};
    for (const Finding &finding : result.findings)
        texts.append(finding.text);
    texts.removeAll(QString());
    return texts;
}

} // namespace

class TestRunner : public QObject
{
    Q_OBJECT

private slots:
    void everyMatchOfAPatternIsAFinding();
    void aPartUsesTheValuesOfTheOnesBeforeIt();
    void aHangingCheckLosesNothingOfTheOthers();
    void aPatternThatBacktracksForEverFails();
    void aPipeIsNotWaitedFor();
    void namesWithPatternCharactersStandForThemselves();
    void aRunCanBeStopped();
};

void TestRunner::everyMatchOfAPatternIsAFinding()
{
    PrivateMachine home;
    home.write("/home/mira/Desktop/a.desktop", "1");
    home.write("/home/mira/Desktop/b.desktop", "12");
    home.write("/home/mira/Desktop/c.txt", "1");
    const CheckResult result = resultOf(
        checkOf(R"({"file": "$HOME/Desktop/*.desktop", "size": {"over": 0}})", "{name}: {size}"),
        home.machine());
    QCOMPARE(textsOf(result), (QStringList{QStringLiteral("a.desktop: 1 byte"),
                                           QStringLiteral("b.desktop: 2 bytes")}));
    QCOMPARE(result.findings.first().where.first().path,
             QStringLiteral("/home/mira/Desktop/a.desktop"));
}

void TestRunner::aPartUsesTheValuesOfTheOnesBeforeIt()
{
    PrivateMachine home;
    home.write("/home/mira/Desktop/a.desktop", "[Desktop Entry]\nTryExec=/usr/bin/there\n");
    home.write("/home/mira/Desktop/b.desktop", "[Desktop Entry]\n\nTryExec=/usr/bin/gone\n");
    home.write("/usr/bin/there", "");
    const CheckResult result = resultOf(
        checkOf(
            R"({"all": [{"desktopEntry": "$HOME/Desktop/*.desktop", "key": "TryExec", "present": true},
                            {"file": "{value}", "exists": false, "as": "program"}]})",
            "{program.path} of {name}"),
        home.machine());
    QCOMPARE(textsOf(result), QStringList(QStringLiteral("/usr/bin/gone of b.desktop")));
    QCOMPARE(result.findings.first().where.first().line, 3);
}

void TestRunner::aHangingCheckLosesNothingOfTheOthers()
{
    PrivateMachine home;
    home.write("/home/mira/x", "");
    // Nothing answers there until the others are done.
    CheckDefinition hanging = checkOf(R"({"url": "http://192.0.2.1/", "within": "60s"})", "x");
    static QSemaphore areDone;
    static const ProbeKind hangs{"hangs", {}, {}, [](const Arguments &, const Looking &) {
                                     areDone.acquire();
                                     return Observed();
                                 }};
    hanging.id = QStringLiteral("hanging");
    hanging.limit = std::chrono::milliseconds(200);
    hanging.look.probe = &hangs;
    hanging.look.arguments.clear();
    QVector<CheckDefinition> checks(4, hanging);
    for (int i = 0; i < 50; ++i)
        checks.append(checkOf(R"({"file": "$HOME/x", "exists": true})", "there"));
    int found = 0;
    int failed = 0;
    runChecks(checks, home.machine(), {}, [&](const CheckResult &result) {
        found += result.outcome == CheckResult::Outcome::Found ? 1 : 0;
        failed += result.outcome == CheckResult::Outcome::Failed &&
                          result.reason.startsWith(QLatin1String("given up after"))
                      ? 1
                      : 0;
        return true;
    });
    QCOMPARE(found, 50);
    QCOMPARE(failed, 4);
    areDone.release(4);
}

void TestRunner::aPatternThatBacktracksForEverFails()
{
    PrivateMachine home;
    home.write("/home/mira/x", QByteArray(10000, 'a') + "!\n");
    const CheckResult result =
        resultOf(checkOf(R"({"line": "$HOME/x", "pattern": "^(a+)+$", "present": true})", "x"),
                 home.machine());
    QCOMPARE(result.outcome, CheckResult::Outcome::Failed);
    QVERIFY2(result.reason.contains(QLatin1String("too many steps")), qPrintable(result.reason));
}

void TestRunner::aPipeIsNotWaitedFor()
{
    PrivateMachine home;
    home.write("/home/mira/x", "");
    const QString pipe = home.machine().located(QStringLiteral("/home/mira/pipe"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const CheckResult result =
        resultOf(checkOf(R"({"ini": "$HOME/pipe", "key": "a", "readable": false})", "{path}"),
                 home.machine());
    QCOMPARE(textsOf(result), QStringList(QStringLiteral("/home/mira/pipe")));
    QVERIFY(result.seconds < 0.5);
}

void TestRunner::namesWithPatternCharactersStandForThemselves()
{
    PrivateMachine home;
    home.write("/home/mira/a[1]*.txt", "x");
    home.write("/home/mira/a1.txt", "x");
    const CheckResult result =
        resultOf(checkOf(R"({"all": [{"file": "$HOME/*.txt", "name": {"has": "["}},
                            {"file": "{path}", "size": {"over": 0}, "as": "again"}]})",
                         "{again.name}"),
                 home.machine());
    QCOMPARE(textsOf(result), QStringList(QStringLiteral("a[1]*.txt")));
}

void TestRunner::aRunCanBeStopped()
{
    PrivateMachine home;
    const QVector<CheckDefinition> checks(
        200, checkOf(R"({"file": "$HOME/x", "exists": false})", "gone"));
    int seen = 0;
    runChecks(checks, home.machine(), {}, [&seen](const CheckResult &) { return ++seen < 3; });
    QCOMPARE(seen, 3);
}

QTEST_GUILESS_MAIN(TestRunner)
#include "tst_runner.moc"
