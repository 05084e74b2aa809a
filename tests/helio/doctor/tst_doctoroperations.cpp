#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include "tests/helio/doctor/doctorpage.h"
#include "tests/support/patience.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::PrivateHome;

namespace {

constexpr char checks[] = R"json({"checks": [
    {"id": "own.open", "title": {"en": "Nobody else writes", "zh": "他人不可写"},
     "look": {"file": ["$HOME/one", "$HOME/two"], "mode": {"has": "o+w"}},
     "finding": {"state": "bad", "text": {"en": "{path} is open.", "zh": "{path} 可被他人修改。"}},
     "repairs": [{"id": "close", "title": {"en": "Close it", "zh": "关闭"},
                  "steps": [{"rights": "{path}", "mode": "o-w"}]}]},
    {"id": "own.colour", "title": "The colour is red",
     "look": {"ini": "$HOME/own.ini", "section": "s", "key": "colour", "value": {"not": "red"}},
     "finding": {"text": "The colour is {value}."},
     "repairs": [{"id": "red", "title": "Red",
                  "steps": [{"set": "{path}", "format": "ini", "key": ["s", "colour"],
                             "value": "red"}]},
                 {"id": "blue", "title": "Blue",
                  "steps": [{"set": "{path}", "format": "ini", "key": ["s", "colour"],
                             "value": "blue"}]}]},
    {"id": "own.line", "title": "No line is old",
     "look": {"line": "$HOME/lines", "pattern": "^(.)=old", "present": true},
     "finding": {"text": "{part1} is old."},
     "repairs": [{"id": "renew", "title": "Renew",
                  "steps": [{"set": "{path}", "format": "ini", "key": ["s", "{part1}"],
                             "value": "new"}]}]}
]})json";
constexpr char sameFileChecks[] = R"json({"checks": [
    {"id": "own.colour", "title": "The colour is red",
     "look": {"ini": "$HOME/own.ini", "section": "s", "key": "colour", "value": {"not": "red"}},
     "finding": {"text": "The colour is wrong."},
     "repairs": [{"id": "set", "title": "Red",
                  "steps": [{"set": "$HOME/own.ini", "format": "ini", "key": ["s", "colour"],
                             "value": "red"}]}]},
    {"id": "own.size", "title": "The size is big",
     "look": {"ini": "$HOME/own.ini", "section": "s", "key": "size", "present": false},
     "finding": {"text": "There is no size."},
     "repairs": [{"id": "set", "title": "Big",
                  "steps": [{"set": "$HOME/own.ini", "format": "ini", "key": ["s", "size"],
                             "value": "big"}]}]}
]})json";
constexpr char threeLines[] = "[s]\na=old\nb=old\n";
constexpr char colours[] = "[s]\ncolour=green\n";

mode_t modeOf(const QString &path)
{
    struct stat state;
    return stat(QFile::encodeName(path).constData(), &state) == 0 ? state.st_mode & 07777 : 0;
}

QJsonObject callOf(const QString &operation)
{
    return {{QStringLiteral("command"), operation}, {QStringLiteral("callback"), operation}};
}

} // namespace

class DoctorOperationsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        const PrivateHome &home = PrivateHome::current();
        QDir(home.path() + QStringLiteral("/.local")).removeRecursively();
        home.writeFile(QStringLiteral(".config/office-assistant/checks.d/own.json"), checks);
        m_lines = home.writeFile(QStringLiteral("lines"), threeLines);
        m_colours = home.writeFile(QStringLiteral("own.ini"), colours);
        for (QString *path : {&m_one, &m_two}) {
            const bool isFirst = path == &m_one;
            *path = home.writeFile(isFirst ? QStringLiteral("one") : QStringLiteral("two"), "x");
            QVERIFY(chmod(QFile::encodeName(*path).constData(), 0666) == 0);
        }
    }

    void checksAreListedWithTitlesInThePagesLanguage()
    {
        DoctorPage page;
        const QJsonArray listed =
            page.result(QStringLiteral("doctor.list"),
                        {{QStringLiteral("language"), QStringLiteral("zh-CN")}})
                .value(QStringLiteral("checks"))
                .toArray();
        QCOMPARE(listed.size(), 3);
        const QJsonObject open = listed.at(2).toObject();
        QCOMPARE(open.value(QStringLiteral("check")), QJsonValue(QStringLiteral("own.open")));
        QCOMPARE(open.value(QStringLiteral("title")), QJsonValue(QStringLiteral("他人不可写")));
        QCOMPARE(open.value(QStringLiteral("repairTitles")),
                 QJsonValue(QJsonObject{{QStringLiteral("close"), QStringLiteral("关闭")}}));
    }

    void mistakesInCheckFilesAreListed()
    {
        DoctorPage page;
        PrivateHome::current().writeFile(
            QStringLiteral(".config/office-assistant/checks.d/own.json"), "{");
        const QJsonArray mistakes =
            page.result(QStringLiteral("doctor.list")).value(QStringLiteral("mistakes")).toArray();
        QCOMPARE(mistakes.size(), 1);
    }

    void findingsComeBeforeTheSummaryEachWithItsNumber()
    {
        DoctorPage page;
        const QJsonObject summary = page.result(QStringLiteral("doctor.look"));
        QCOMPARE(summary.value(QStringLiteral("checks")), QJsonValue(3));
        QCOMPARE(summary.value(QStringLiteral("findings")), QJsonValue(5));
        QCOMPARE(page.linesOf("check").size(), 3);
        QSet<int> numbers;
        for (const QJsonObject &finding : page.linesOf("finding"))
            numbers.insert(finding.value(QStringLiteral("finding")).toInt());
        QCOMPARE(numbers.size(), 5);
        QVERIFY(!numbers.contains(0));
    }

    void aPlanShowsWhatWouldChangeAndChangesNothing()
    {
        DoctorPage page;
        const QJsonArray changes = page.planned(QStringLiteral("own.colour"), QStringLiteral("red"))
                                       .value(QStringLiteral("changes"))
                                       .toArray();
        QCOMPARE(changes.size(), 1);
        const QJsonObject change = changes.first().toObject();
        QCOMPARE(change.value(QStringLiteral("path")), QJsonValue(m_colours));
        QVERIFY(change.value(QStringLiteral("diff"))
                    .toString()
                    .contains(QStringLiteral("-colour=green\n+colour=red\n")));
        QCOMPARE(testsupport::readFile(m_colours), QByteArray(colours));
    }

    void oneRepairServesAllFindingsOfACheckAndIsUndoneAsOne()
    {
        DoctorPage page;
        const QJsonObject outcome = page.fixed(QStringLiteral("own.open"), QStringLiteral("close"));
        QCOMPARE(outcome.value(QStringLiteral("result")), QJsonValue(QStringLiteral("repaired")));
        QCOMPARE(modeOf(m_one), mode_t(0664));
        QCOMPARE(modeOf(m_two), mode_t(0664));

        const QJsonArray entries = page.result(QStringLiteral("doctor.history"))
                                       .value(QStringLiteral("entries"))
                                       .toArray();
        QCOMPARE(entries.size(), 1);
        const QJsonValue journal = entries.first().toObject().value(QStringLiteral("journal"));
        QCOMPARE(journal, outcome.value(QStringLiteral("journal")));
        const QJsonObject undone =
            page.result(QStringLiteral("doctor.undo"), {{QStringLiteral("journal"), journal}});
        QCOMPARE(undone.value(QStringLiteral("result")), QJsonValue(QStringLiteral("undone")));
        QCOMPARE(modeOf(m_one), mode_t(0666));
        QCOMPARE(modeOf(m_two), mode_t(0666));
    }

    void oneOfTwoFindingsInAFileCanBeRepairedAlone()
    {
        DoctorPage page;
        page.result(QStringLiteral("doctor.look"),
                    {{QStringLiteral("checks"), QJsonArray{QStringLiteral("own.line")}}});
        const QJsonValue number = page.linesOf("finding").last().value(QStringLiteral("finding"));
        const QJsonObject plan = page.result(QStringLiteral("doctor.plan"),
                                             {{QStringLiteral("findings"), QJsonArray{number}},
                                              {QStringLiteral("repair"), QStringLiteral("renew")}});
        const QJsonObject outcome =
            page.result(QStringLiteral("doctor.fix"),
                        {{QStringLiteral("plan"), plan.value(QStringLiteral("plan"))}});
        QCOMPARE(outcome.value(QStringLiteral("result")), QJsonValue(QStringLiteral("repaired")));
        QCOMPARE(testsupport::readFile(m_lines), QByteArray("[s]\na=old\nb=new\n"));
    }

    void aPlanForSeveralFindingsInAFileHasOneChange()
    {
        DoctorPage page;
        const QJsonArray changes = page.planned(QStringLiteral("own.line"), QStringLiteral("renew"))
                                       .value(QStringLiteral("changes"))
                                       .toArray();
        QCOMPARE(changes.size(), 1);
        const QString diff = changes.first().toObject().value(QStringLiteral("diff")).toString();
        QVERIFY(diff.contains(QStringLiteral("-a=old\n-b=old\n+a=new\n+b=new\n")));
    }

    void aRepairThatDoesNotHelpIsTakenBack()
    {
        DoctorPage page;
        const QJsonObject outcome =
            page.fixed(QStringLiteral("own.colour"), QStringLiteral("blue"));
        QCOMPARE(outcome.value(QStringLiteral("result")), QJsonValue(QStringLiteral("unchanged")));
        QVERIFY(!outcome.value(QStringLiteral("reason")).toString().isEmpty());
        QCOMPARE(testsupport::readFile(m_colours), QByteArray(colours));
    }

    void aPlanIsDoneOnceAndOnlyAsItWasShown()
    {
        DoctorPage page;
        const QJsonValue plan = page.planned(QStringLiteral("own.colour"), QStringLiteral("red"))
                                    .value(QStringLiteral("plan"));
        PrivateHome::current().writeFile(QStringLiteral("own.ini"), "[s]\ncolour=grey\n");
        const QJsonObject arguments{{QStringLiteral("plan"), plan}};
        const QJsonObject outcome = page.result(QStringLiteral("doctor.fix"), arguments);
        QCOMPARE(outcome.value(QStringLiteral("result")), QJsonValue(QStringLiteral("refused")));
        QCOMPARE(testsupport::readFile(m_colours), QByteArray("[s]\ncolour=grey\n"));
        QVERIFY(!page.error(QStringLiteral("doctor.fix"), arguments).isEmpty());
    }

    void requestsThatMakeNoSenseAreRefused_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QJsonObject>("arguments");
        QTest::newRow("operation") << QStringLiteral("doctor.none") << QJsonObject();
        QTest::newRow("check") << QStringLiteral("doctor.look")
                               << QJsonObject{{QStringLiteral("checks"), QJsonArray{1}}};
        QTest::newRow("finding") << QStringLiteral("doctor.plan")
                                 << QJsonObject{{QStringLiteral("findings"),
                                                 QJsonArray{QStringLiteral("/etc")}}};
        QTest::newRow("findings") << QStringLiteral("doctor.plan") << QJsonObject();
        QTest::newRow("command") << QStringLiteral("doctor.watch")
                                 << QJsonObject{{QStringLiteral("command"),
                                                 QStringLiteral("exportsysinfo")}};
        QTest::newRow("plan") << QStringLiteral("doctor.fix") << QJsonObject();
    }

    void requestsThatMakeNoSenseAreRefused()
    {
        QFETCH(const QString, operation);
        QFETCH(const QJsonObject, arguments);
        DoctorPage page;
        QVERIFY(!page.error(operation, arguments).isEmpty());
    }

    void findingsOfDifferentChecksHaveNoCommonPlan()
    {
        DoctorPage page;
        page.result(QStringLiteral("doctor.look"));
        QJsonArray numbers;
        for (const QJsonObject &finding : page.linesOf("finding"))
            numbers.append(finding.value(QStringLiteral("finding")));
        for (const char *repair : {"close", "red", "none"})
            QVERIFY(!page.error(QStringLiteral("doctor.plan"),
                                {{QStringLiteral("findings"), numbers},
                                 {QStringLiteral("repair"), QLatin1String(repair)}})
                         .isEmpty());
    }

    void plansForTheSameFileAreMadeOneAfterTheOther()
    {
        PrivateHome::current().writeFile(
            QStringLiteral(".config/office-assistant/checks.d/own.json"), sameFileChecks);
        DoctorPage page;
        page.result(QStringLiteral("doctor.look"));
        QMap<QString, int> numbers;
        for (const QJsonObject &finding : page.linesOf("finding"))
            numbers.insert(finding.value(QStringLiteral("check")).toString(),
                           finding.value(QStringLiteral("finding")).toInt());
        const auto plan = [&](const char *check, const QJsonArray &after) {
            return page.result(
                QStringLiteral("doctor.plan"),
                {{QStringLiteral("findings"), QJsonArray{numbers.value(QLatin1String(check))}},
                 {QStringLiteral("repair"), QStringLiteral("set")},
                 {QStringLiteral("after"), after}});
        };
        const QJsonValue first = plan("own.colour", {}).value(QStringLiteral("plan"));
        const QJsonObject second = plan("own.size", {first});
        const QString diff = second.value(QStringLiteral("changes"))
                                 .toArray()
                                 .first()
                                 .toObject()
                                 .value(QStringLiteral("diff"))
                                 .toString();
        QVERIFY2(diff.contains(QStringLiteral("\n colour=red\n")), qPrintable(diff));
        QVERIFY2(diff.contains(QStringLiteral("\n+size=big\n")), qPrintable(diff));
        for (const QJsonValue &number : {first, second.value(QStringLiteral("plan"))})
            QCOMPARE(page.result(QStringLiteral("doctor.fix"), {{QStringLiteral("plan"), number}})
                         .value(QStringLiteral("result")),
                     QJsonValue(QStringLiteral("repaired")));
        QFile file(m_colours);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("[s]\ncolour=red\nsize=big\n"));
    }

    void aWholeLookIsKeptWhenThePageWants()
    {
        DoctorPage page;
        const auto look = [&page](const QJsonObject &arguments) {
            return page.result(QStringLiteral("doctor.look"), arguments);
        };
        const QJsonObject keep{{QStringLiteral("keep"), true}};
        QVERIFY(!look({}).contains(QStringLiteral("since")));
        QVERIFY(!look({{QStringLiteral("keep"), true},
                       {QStringLiteral("checks"), QJsonArray{QStringLiteral("own.colour")}}})
                     .contains(QStringLiteral("since")));
        const QJsonObject first = look(keep);
        QCOMPARE(first.value(QStringLiteral("last")), QJsonValue(QString()));
        QCOMPARE(first.value(QStringLiteral("unkept")), QJsonValue(QString()));
        page.fixed(QStringLiteral("own.colour"), QStringLiteral("red"));
        const QJsonObject second = look(keep);
        QCOMPARE(second.value(QStringLiteral("fixed")),
                 QJsonValue(QJsonArray{QStringLiteral("own.colour")}));
        QCOMPARE(second.value(QStringLiteral("last")), first.value(QStringLiteral("since")));
        const QJsonArray kept = page.result(QStringLiteral("doctor.checkups"))
                                    .value(QStringLiteral("checkups"))
                                    .toArray();
        QCOMPARE(kept.size(), 2);
        QCOMPARE(kept.last().toObject().value(QStringLiteral("found")).toArray().size(), 2);
    }

    void anUndoOfWhatIsNotThereSaysSo()
    {
        DoctorPage page;
        const QJsonObject undone =
            page.result(QStringLiteral("doctor.undo"), {{QStringLiteral("journal"), 7}});
        QCOMPARE(undone.value(QStringLiteral("result")), QJsonValue(QStringLiteral("failed")));
        QVERIFY(!undone.value(QStringLiteral("reason")).toString().isEmpty());
    }

    void cancellingEndsLooksThatWait()
    {
        DoctorPage page;
        constexpr int looks = 100;
        for (int look = 0; look < looks; ++look)
            page.call(QStringLiteral("doctor.look"));
        page.call(QStringLiteral("doctor.cancel"));
        QVERIFY(page.ended().contains(QStringLiteral("result")));
        QTRY_VERIFY_WITH_TIMEOUT(page.envelopes.contains(looks), testsupport::longestWaitMs);
        const QJsonObject last =
            page.envelopes.value(looks).value(QStringLiteral("result")).toObject();
        QCOMPARE(last.value(QStringLiteral("checks")), QJsonValue(0));
        QCOMPARE(page.result(QStringLiteral("doctor.look")).value(QStringLiteral("checks")),
                 QJsonValue(3));
    }

    void callsOfThePlugInAreLeft()
    {
        DoctorPage page;
        QVERIFY(!page.call(QStringLiteral("getmemoryinfo")));
        QVERIFY(!page.call(QStringLiteral("startsearchfile"),
                           {{QStringLiteral("name"), QStringLiteral("doctor.look")}}));
        QVERIFY(!page.operations.take({}, &page, {}));
    }

    void aPageThatIsGoneIsNotCalled()
    {
        helio::DoctorOperations operations(QStringLiteral("/nonexistent"));
        {
            QObject gone;
            operations.take(callOf(QStringLiteral("doctor.look")), &gone,
                            [](const QString &, const QString &) { qFatal("called"); });
        }
        bool isOver = false;
        operations.take(callOf(QStringLiteral("doctor.list")), this,
                        [&isOver](const QString &, const QString &) { isOver = true; });
        QTRY_VERIFY_WITH_TIMEOUT(isOver, testsupport::longestWaitMs);
    }

private:
    QString m_one;
    QString m_two;
    QString m_colours;
    QString m_lines;
};

HEADLESS_TEST_MAIN(DoctorOperationsTest)
#include "tst_doctoroperations.moc"
