#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <sys/stat.h>

#include "helio/doctor/doctoroperations.h"
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
constexpr char dumpCheck[] = R"json({"checks": [
    {"id": "crash.dumps-off", "title": "Dumps are kept",
     "look": {"ini": "$XDG_CONFIG_HOME/Orvane/Office.conf", "section": "6.0", "key": "SaveDump",
              "value": "false"},
     "finding": {"text": "Dumps are not kept."}}
]})json";
constexpr char dumpsOff[] = "[6.0]\nSaveDump=false\n";
constexpr char threeLines[] = "[s]\na=old\nb=old\n";
constexpr char colours[] = "[s]\ncolour=green\n";

/// A page's end of the operations.
class Page : public QObject
{
public:
    bool call(const QString &operation, const QJsonObject &arguments = {})
    {
        const QJsonObject call{{QStringLiteral("command"), operation},
                               {QStringLiteral("callback"), QString::number(++m_calls)},
                               {QStringLiteral("args"), arguments}};
        return operations.take(
            QString::fromUtf8(QJsonDocument(call).toJson()), this,
            [this](const QString &callback, const QString &json) { receive(callback, json); });
    }

    /// The envelope that ends the last call.
    QJsonObject ended()
    {
        const auto isOver = [this] { return envelopes.contains(m_calls); };
        return QTest::qWaitFor(isOver, testsupport::longestWaitMs) ? envelopes.value(m_calls)
                                                                   : QJsonObject();
    }

    QJsonObject result(const QString &operation, const QJsonObject &arguments = {})
    {
        lines.clear();
        call(operation, arguments);
        return ended().value(QStringLiteral("result")).toObject();
    }

    QString error(const QString &operation, const QJsonObject &arguments)
    {
        call(operation, arguments);
        return ended().value(QStringLiteral("error")).toString();
    }

    /// The lines of that type among those of the last result.
    QVector<QJsonObject> linesOf(const char *type) const
    {
        QVector<QJsonObject> found;
        for (const QJsonObject &line : lines) {
            if (line.value(QStringLiteral("type")) == QLatin1String(type))
                found.append(line);
        }
        return found;
    }

    /// Looks, and plans a repair of all findings of a check.
    QJsonObject planned(const QString &check, const QString &repair)
    {
        result(QStringLiteral("doctor.look"), {{QStringLiteral("checks"), QJsonArray{check}}});
        QJsonArray numbers;
        for (const QJsonObject &finding : linesOf("finding"))
            numbers.append(finding.value(QStringLiteral("finding")));
        return result(QStringLiteral("doctor.plan"),
                      {{QStringLiteral("findings"), numbers}, {QStringLiteral("repair"), repair}});
    }

    QJsonObject fixed(const QString &check, const QString &repair)
    {
        const QJsonObject plan = planned(check, repair);
        return result(QStringLiteral("doctor.fix"),
                      {{QStringLiteral("plan"), plan.value(QStringLiteral("plan"))}});
    }

    helio::DoctorOperations operations{QStringLiteral("/nonexistent")};
    QVector<QJsonObject> lines;
    QMap<int, QJsonObject> envelopes;

private:
    void receive(const QString &callback, const QString &json)
    {
        if (QThread::currentThread() != qApp->thread())
            qFatal("delivered on another thread");
        const QJsonObject envelope = QJsonDocument::fromJson(json.toUtf8()).object();
        if (envelope.contains(QStringLiteral("line")))
            lines.append(envelope.value(QStringLiteral("line")).toObject());
        else
            envelopes.insert(callback.toInt(), envelope);
    }

    int m_calls = 0;
};

mode_t modeOf(const QString &path)
{
    struct stat state;
    return stat(QFile::encodeName(path).constData(), &state) == 0 ? state.st_mode & 07777 : 0;
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
        Page page;
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
        Page page;
        PrivateHome::current().writeFile(
            QStringLiteral(".config/office-assistant/checks.d/own.json"), "{");
        const QJsonArray mistakes =
            page.result(QStringLiteral("doctor.list")).value(QStringLiteral("mistakes")).toArray();
        QCOMPARE(mistakes.size(), 1);
    }

    void findingsComeBeforeTheSummaryEachWithItsNumber()
    {
        Page page;
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
        Page page;
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
        Page page;
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
        Page page;
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
        Page page;
        const QJsonArray changes = page.planned(QStringLiteral("own.line"), QStringLiteral("renew"))
                                       .value(QStringLiteral("changes"))
                                       .toArray();
        QCOMPARE(changes.size(), 1);
        const QString diff = changes.first().toObject().value(QStringLiteral("diff")).toString();
        QVERIFY(diff.contains(QStringLiteral("-a=old\n-b=old\n+a=new\n+b=new\n")));
    }

    void aRepairThatDoesNotHelpIsTakenBack()
    {
        Page page;
        const QJsonObject outcome =
            page.fixed(QStringLiteral("own.colour"), QStringLiteral("blue"));
        QCOMPARE(outcome.value(QStringLiteral("result")), QJsonValue(QStringLiteral("unchanged")));
        QVERIFY(!outcome.value(QStringLiteral("reason")).toString().isEmpty());
        QCOMPARE(testsupport::readFile(m_colours), QByteArray(colours));
    }

    void aCommandsRepairIsPreviewedWatchedCheckedAndUndone()
    {
        const QString settings = PrivateHome::current().writeFile(
            QStringLiteral(".config/Orvane/Office.conf"), dumpsOff);
        PrivateHome::current().writeFile(
            QStringLiteral(".config/office-assistant/checks.d/own.json"), dumpCheck);
        const QJsonObject command{{QStringLiteral("command"), QStringLiteral("startDump")}};
        Page page;
        const QJsonObject preview = page.result(QStringLiteral("doctor.preview"), command);
        QCOMPARE(preview.value(QStringLiteral("paths")), QJsonValue(QJsonArray{settings}));
        QCOMPARE(preview.value(QStringLiteral("lasting")), QJsonValue(QString()));

        const QJsonObject begun = page.result(QStringLiteral("doctor.watch"), command);
        QCOMPARE(begun.value(QStringLiteral("refusal")), QJsonValue(QString()));
        PrivateHome::current().writeFile(QStringLiteral(".config/Orvane/Office.conf"),
                                         "[6.0]\nSaveDump=true\n");
        const QJsonObject ended = page.result(QStringLiteral("doctor.watched"));
        QCOMPARE(ended.value(QStringLiteral("result")), QJsonValue(QStringLiteral("repaired")));
        QCOMPARE(ended.value(QStringLiteral("journal")), begun.value(QStringLiteral("journal")));
        QCOMPARE(page.linesOf("check").size(), 1);
        const QJsonObject change =
            ended.value(QStringLiteral("changes")).toArray().first().toObject();
        QVERIFY(change.value(QStringLiteral("diff"))
                    .toString()
                    .contains(QStringLiteral("-SaveDump=false\n+SaveDump=true\n")));

        const QJsonObject undone = page.result(QStringLiteral("doctor.undo"), ended);
        QCOMPARE(undone.value(QStringLiteral("result")), QJsonValue(QStringLiteral("undone")));
        QCOMPARE(testsupport::readFile(settings), QByteArray(dumpsOff));
    }

    void aCommandThatDidNotHelpSaysWhatIsStillThere()
    {
        PrivateHome::current().writeFile(QStringLiteral(".config/Orvane/Office.conf"), dumpsOff);
        PrivateHome::current().writeFile(
            QStringLiteral(".config/office-assistant/checks.d/own.json"), dumpCheck);
        Page page;
        page.result(QStringLiteral("doctor.watch"),
                    {{QStringLiteral("command"), QStringLiteral("startDump")}});
        const QJsonObject ended = page.result(QStringLiteral("doctor.watched"));
        QCOMPARE(ended.value(QStringLiteral("result")), QJsonValue(QStringLiteral("failed")));
        QVERIFY(ended.value(QStringLiteral("reason"))
                    .toString()
                    .contains(QStringLiteral("Dumps are not kept.")));
        QCOMPARE(ended.value(QStringLiteral("journal")), QJsonValue(0));
        QVERIFY(ended.value(QStringLiteral("changes")).toArray().isEmpty());
    }

    void whileACommandIsWatchedOtherRepairsWait()
    {
        Page page;
        const QJsonObject command{{QStringLiteral("command"), QStringLiteral("stopDump")}};
        const QJsonValue none{QString()};
        QCOMPARE(
            page.result(QStringLiteral("doctor.watch"), command).value(QStringLiteral("refusal")),
            none);
        QVERIFY(
            page.result(QStringLiteral("doctor.watch"), command).value(QStringLiteral("refusal")) !=
            none);
        const QJsonObject fixed = page.fixed(QStringLiteral("own.colour"), QStringLiteral("red"));
        QCOMPARE(fixed.value(QStringLiteral("result")), QJsonValue(QStringLiteral("refused")));
        const QJsonObject ended = page.result(QStringLiteral("doctor.watched"));
        QCOMPARE(ended.value(QStringLiteral("result")), QJsonValue(QStringLiteral("unchanged")));
        QVERIFY(!page.error(QStringLiteral("doctor.watched"), {}).isEmpty());
    }

    void restoringShortcutsIsPreviewedFileByFile()
    {
        // The script goes by the user's name.
        const QByteArray user = qgetenv("USER");
        const QString home = PrivateHome::current().path();
        qputenv("USER", QFile::encodeName(QStringLiteral("..") + home));
        qputenv("SUITE_ROOT", QFile::encodeName(home + QStringLiteral("/suite")));
        for (const char *name : {"vyr", "tbl", "shw"})
            PrivateHome::current().writeFile(
                QStringLiteral("suite/desktops/vyr-office-%1.desktop").arg(QLatin1String(name)),
                "new\n");
        PrivateHome::current().writeFile(QStringLiteral("Desktop/vyr-office-vyr.desktop"), "old\n");
        PrivateHome::current().writeFile(QStringLiteral("Desktop/vyr-office-tbl.desktop"), "new\n");
        PrivateHome::current().writeFile(QStringLiteral("Desktop/vyr-office-tessaly.desktop"), "");
        Page page;
        const QJsonObject preview =
            page.result(QStringLiteral("doctor.preview"),
                        {{QStringLiteral("command"), QStringLiteral("fixfouricon")}});
        qunsetenv("SUITE_ROOT");
        qputenv("USER", user);
        QCOMPARE(preview.value(QStringLiteral("paths")).toArray().size(), 9);
        QStringList changes;
        for (const QJsonValue change : preview.value(QStringLiteral("changes")).toArray())
            changes.append(change[QStringLiteral("kind")].toString() +
                           change[QStringLiteral("path")].toString().mid(home.size()));
        QCOMPARE(changes,
                 (QStringList{QStringLiteral("write/Desktop/vyr-office-vyr.desktop"),
                              QStringLiteral("create/Desktop/vyr-office-shw.desktop"),
                              QStringLiteral("remove/Desktop/vyr-office-tessaly.desktop")}));
    }

    void dumpsThatAreTooLargeAreNamedAsLastingBefore()
    {
        const QString dump = PrivateHome::current().writeFile(
            QStringLiteral(".local/share/Orvane/tmp/dump/vyr_1.dmp"), "dump");
        Page page;
        const QJsonObject command{{QStringLiteral("command"), QStringLiteral("cleardumpdir")}};
        const auto preview = [&] { return page.result(QStringLiteral("doctor.preview"), command); };
        QCOMPARE(preview().value(QStringLiteral("lasting")), QJsonValue(QString()));
        QCOMPARE(preview().value(QStringLiteral("changes")).toArray().size(), 1);
        QVERIFY(QFile(dump).resize(65 << 20));
        QVERIFY(!preview().value(QStringLiteral("lasting")).toString().isEmpty());
        QVERIFY(!page.result(QStringLiteral("doctor.watch"), command)
                     .value(QStringLiteral("refusal"))
                     .toString()
                     .isEmpty());
    }

    void aPlanIsDoneOnceAndOnlyAsItWasShown()
    {
        Page page;
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
        Page page;
        QVERIFY(!page.error(operation, arguments).isEmpty());
    }

    void findingsOfDifferentChecksHaveNoCommonPlan()
    {
        Page page;
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

    void anUndoOfWhatIsNotThereSaysSo()
    {
        Page page;
        const QJsonObject undone =
            page.result(QStringLiteral("doctor.undo"), {{QStringLiteral("journal"), 7}});
        QCOMPARE(undone.value(QStringLiteral("result")), QJsonValue(QStringLiteral("failed")));
        QVERIFY(!undone.value(QStringLiteral("reason")).toString().isEmpty());
    }

    void cancellingEndsLooksThatWait()
    {
        Page page;
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
        Page page;
        QVERIFY(!page.call(QStringLiteral("getmemoryinfo")));
        QVERIFY(!page.call(QStringLiteral("startsearchfile"),
                           {{QStringLiteral("name"), QStringLiteral("doctor.look")}}));
        QVERIFY(!page.operations.take(QStringLiteral("no JSON, doctor.look"), &page, {}));
    }

    void aPageThatIsGoneIsNotCalled()
    {
        helio::DoctorOperations operations(QStringLiteral("/nonexistent"));
        {
            QObject gone;
            operations.take(QStringLiteral(R"({"command":"doctor.look","callback":"a"})"), &gone,
                            [](const QString &, const QString &) { qFatal("called"); });
        }
        bool isOver = false;
        operations.take(QStringLiteral(R"({"command":"doctor.list","callback":"b"})"), this,
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
