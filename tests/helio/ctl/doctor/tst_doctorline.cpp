#include <QTest>

#include "helio/ctl/doctor/doctorline.h"

using ctl::DoctorLine;
using ctl::parseDoctorLine;

class tst_DoctorLine : public QObject
{
    Q_OBJECT

private slots:
    void withoutWordsAllChecksRun()
    {
        const DoctorLine line = parseDoctorLine({});
        QVERIFY(line.fault.isEmpty());
        QCOMPARE(line.mode, DoctorLine::Check);
        QVERIFY(line.checks.isEmpty());
        QVERIFY(!line.json);
    }

    void modesAreWordsOrOptions_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("mode");
        const auto row = [](const char *words, DoctorLine::Mode mode) {
            QTest::newRow(words) << QString::fromLatin1(words).split(QLatin1Char(' ')) << int(mode);
        };
        row("--list", DoctorLine::List);
        row("list", DoctorLine::List);
        row("plan", DoctorLine::PlanRepairs);
        row("plan a.b", DoctorLine::PlanRepairs);
        row("fix --yes a.b c.d", DoctorLine::Fix);
        row("--fix", DoctorLine::Fix);
        row("a.b --fix", DoctorLine::Fix);
        row("undo", DoctorLine::Undo);
        row("undo 3", DoctorLine::Undo);
        row("history --json", DoctorLine::History);
        row("lint file.json", DoctorLine::Lint);
        row("--lint file.json", DoctorLine::Lint);
        row("--help", DoctorLine::ShowText);
        row("a.b", DoctorLine::Check);
    }
    void modesAreWordsOrOptions()
    {
        QFETCH(QStringList, words);
        QFETCH(int, mode);
        const DoctorLine line = parseDoctorLine(words);
        QCOMPARE(line.fault, QString());
        QCOMPARE(int(line.mode), mode);
    }

    void theRestOfALineIsKept()
    {
        const DoctorLine fix = parseDoctorLine(
            {QStringLiteral("fix"), QStringLiteral("a.b"), QStringLiteral("--dry-run"),
             QStringLiteral("--json"), QStringLiteral("--repair"), QStringLiteral("r"),
             QStringLiteral("c.d")});
        QCOMPARE(fix.checks, QStringList({QStringLiteral("a.b"), QStringLiteral("c.d")}));
        QVERIFY(fix.dryRun && fix.json && !fix.yes);
        QCOMPARE(fix.repair, QStringLiteral("r"));
        QCOMPARE(parseDoctorLine({QStringLiteral("undo"), QStringLiteral("12")}).journal, 12);
        QCOMPARE(parseDoctorLine({QStringLiteral("lint"), QStringLiteral("x")}).file,
                 QStringLiteral("x"));
    }

    void wrongLinesAreFaults_data()
    {
        QTest::addColumn<QStringList>("words");
        for (const char *words : {"undo x", "undo 0", "undo -1", "undo 1 2", "lint", "lint a b",
                                  "history x", "list x", "--unknown", "--repair"})
            QTest::newRow(words) << QString::fromLatin1(words).split(QLatin1Char(' '));
    }
    void wrongLinesAreFaults()
    {
        QFETCH(QStringList, words);
        QVERIFY(!parseDoctorLine(words).fault.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_DoctorLine)
#include "tst_doctorline.moc"
