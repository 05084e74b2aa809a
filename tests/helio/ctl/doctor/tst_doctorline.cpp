#include <QTest>

#include "helio/ctl/doctor/doctorline.h"

using ctl::DoctorLine;

namespace {

DoctorLine parsed(const char *words)
{
    return ctl::parseDoctorLine(
        QString::fromLatin1(words).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

} // namespace

class tst_DoctorLine : public QObject
{
    Q_OBJECT

private slots:
    void withoutWordsAllChecksRun()
    {
        const DoctorLine line = parsed("");
        QVERIFY(line.fault.isEmpty());
        QCOMPARE(line.mode, DoctorLine::Check);
        QVERIFY(line.checks.isEmpty());
        QVERIFY(!line.json);
    }

    void theModeIsAnOptionOrAWord_data()
    {
        QTest::addColumn<int>("mode");
        const auto row = [](const char *words, DoctorLine::Mode mode) {
            QTest::newRow(words) << int(mode);
        };
        row("--list", DoctorLine::List);
        row("--suite /opt/libreoffice7.6", DoctorLine::Choose);
        row("--fix", DoctorLine::Fix);
        row("--fix --yes a.b c.d", DoctorLine::Fix);
        row("a.b --fix --dry-run", DoctorLine::Fix);
        row("undo", DoctorLine::Undo);
        row("undo 3", DoctorLine::Undo);
        row("--json undo 3", DoctorLine::Undo);
        row("history --json", DoctorLine::History);
        row("--lint file.json", DoctorLine::Lint);
        row("lint file.json", DoctorLine::Lint);
        row("plan", DoctorLine::Fix);
        row("--json plan a.b --repair r", DoctorLine::Fix);
        row("fix a.b --yes", DoctorLine::Fix);
        row("--help", DoctorLine::ShowText);
        row("a.b", DoctorLine::Check);
        row("a.b undo", DoctorLine::Check);
    }
    void theModeIsAnOptionOrAWord()
    {
        QFETCH(int, mode);
        const DoctorLine line = parsed(QTest::currentDataTag());
        QCOMPARE(line.fault, QString());
        QCOMPARE(int(line.mode), mode);
    }

    void theRestOfALineIsKept()
    {
        const DoctorLine fix = parsed("--fix a.b --dry-run --json --repair r c.d");
        QCOMPARE(fix.checks, QStringList({QStringLiteral("a.b"), QStringLiteral("c.d")}));
        QVERIFY(fix.dryRun && fix.json && !fix.yes);
        QCOMPARE(fix.repair, QStringLiteral("r"));
        QCOMPARE(parsed("undo 12").journal, 12);
        QCOMPARE(parsed("--lint x").file, QStringLiteral("x"));
        QCOMPARE(parsed("lint x").file, QStringLiteral("x"));
        const DoctorLine plan = parsed("plan a.b");
        QVERIFY(plan.dryRun);
        QCOMPARE(plan.checks, QStringList(QStringLiteral("a.b")));
        QVERIFY(!parsed("fix a.b").dryRun);
        QVERIFY(parsed("fix a.b --dry-run").dryRun);
    }

    void wrongLinesAreFaults_data()
    {
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *words, const char *reason) {
            QTest::newRow(words) << QString::fromLatin1(reason);
        };
        row("undo x", "undo takes the number of one repair");
        row("undo 0", "undo takes the number of one repair");
        row("undo 1 2", "undo takes the number of one repair");
        row("undo -1", "there is no option -1");
        row("--unknown", "there is no option --unknown");
        row("--list x", "unexpected argument: x");
        row("--lint a b", "unexpected argument: b");
        row("lint a b", "unexpected argument: b");
        row("lint", "lint takes a file");
        row("plan --list",
            "only one of plan, fix, undo, history, lint, --list and --suite can be done");
        row("history x", "unexpected argument: x");
        row("--yes", "--yes belongs to --fix");
        row("--list --dry-run", "--dry-run belongs to --fix");
        row("undo --repair r", "--repair belongs to --fix");
        row("--fix --list",
            "only one of plan, fix, undo, history, lint, --list and --suite can be done");
        row("undo --fix",
            "only one of plan, fix, undo, history, lint, --list and --suite can be done");
        row("--lint", "Missing value after '--lint'.");
        row("--repair", "Missing value after '--repair'.");
    }
    void wrongLinesAreFaults()
    {
        QFETCH(QString, reason);
        QCOMPARE(parsed(QTest::currentDataTag()).fault, reason);
    }

    void theHelpDescribesEveryOption()
    {
        const QString help = parsed("--help").text;
        for (const char *option : {"--list ", "--fix ", "--yes ", "--dry-run ", "--repair ID ",
                                   "--lint FILE ", "--json ", "--help ", "undo [N]", "history"})
            QVERIFY2(help.contains(QLatin1String(option)), option);
    }
};

QTEST_GUILESS_MAIN(tst_DoctorLine)
#include "tst_doctorline.moc"
