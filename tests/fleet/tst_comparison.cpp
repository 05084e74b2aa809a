#include <QTest>

#include "fleet/compare/comparison.h"
#include "fleet/compare/steadyvalue.h"
#include "tests/fleet/generatedpair.h"

using fleet::Comparison;
using fleet::Difference;
using fleet::Report;

namespace {

// A sanitizer needs fewer: it looks at memory, not at ranks.
#ifdef __SANITIZE_ADDRESS__
constexpr int pairs = 40;
#else
constexpr int pairs = 500;
#endif

Report reportWith(const QString &group, const QString &name, const QString &value)
{
    Report report;
    report.groups[group].insert(name, value);
    return report;
}

QStringList keysOf(const Difference &difference)
{
    QStringList keys;
    for (const QString &name : difference.names)
        keys.append(difference.group + QLatin1Char('/') + name);
    return keys;
}

} // namespace

/// What differs between machines and can matter.
class ComparisonTest : public QObject
{
    Q_OBJECT

private slots:
    void plantedDifferencesAreFoundAmongPassingOnes()
    {
        int causesInFront = 0;
        int falseRows = 0;
        for (unsigned number = 0; number < pairs; ++number) {
            GeneratedMachines machines(number, 2);
            machines.plant(1);
            const Comparison comparison = fleet::compareReports(machines.reports);
            QStringList found;
            for (const Difference &difference : comparison.differences)
                found += keysOf(difference);
            const QSet<QString> seen(found.begin(), found.end());
            const QString label =
                QStringLiteral("pair %1: %2").arg(number).arg(found.join(QLatin1Char(' ')));
            QVERIFY2(seen.contains(machines.planted), qPrintable(label));
            falseRows += seen.size() - machines.planted.size();
            QVERIFY2(falseRows <= 2, qPrintable(label));
            if (found.mid(0, 3).contains(machines.cause))
                ++causesInFront;
        }
        qInfo("%d pairs: %d false rows, the cause in the first three rows of %d", pairs, falseRows,
              causesInFront);
        QVERIFY2(causesInFront * 100 >= pairs * 95, qPrintable(QString::number(causesInFront)));
    }

    void theOutlierIsNamed()
    {
        for (unsigned number = 0; number < 20; ++number) {
            GeneratedMachines machines(number, 5);
            machines.plant(3);
            const Comparison comparison = fleet::compareReports(machines.reports);
            QCOMPARE(comparison.outlier.value_or(-1), 3);
            for (const Difference &difference : comparison.differences)
                QCOMPARE(difference.deviating, QVector<int>{3});
        }
    }

    void nobodyIsTheOutlierOfMachinesThatAreAlike()
    {
        QVERIFY(!fleet::compareReports(GeneratedMachines(1, 4).reports).outlier);
    }

    void twoMachinesHaveNoOutlier()
    {
        GeneratedMachines machines(1, 2);
        machines.plant(0);
        QVERIFY(!fleet::compareReports(machines.reports).outlier);
    }

    void manyThatDifferInTheSameWayAreOneDifference()
    {
        QVector<Report> reports(2);
        for (int i = 0; i < 90; ++i)
            reports[0].groups[QStringLiteral("fonts")].insert(QStringLiteral("font %1").arg(i),
                                                              QStringLiteral("installed"));
        const Comparison comparison = fleet::compareReports(reports);
        QCOMPARE(comparison.differences.size(), 1);
        QCOMPARE(comparison.differences.first().names.size(), 90);
        QVERIFY(!comparison.differences.first().values.at(1));
    }

    void findingsComeFirst()
    {
        QVector<Report> reports{reportWith(QStringLiteral("environment"),
                                           QStringLiteral("LD_PRELOAD"), QStringLiteral("x")),
                                Report()};
        reports[1].findings.append(
            {QStringLiteral("some.check"), QStringLiteral("bad"), QStringLiteral("broken")});
        const Comparison comparison = fleet::compareReports(reports);
        QCOMPARE(comparison.differences.size(), 2);
        QCOMPARE(comparison.differences.first().group, QStringLiteral("findings"));
    }

    void differencesOfUnknownKindsAreShownLast()
    {
        QVector<Report> reports{
            reportWith(QStringLiteral("new group"), QStringLiteral("a"), QStringLiteral("x")),
            reportWith(QStringLiteral("fonts"), QStringLiteral("f"), QStringLiteral("installed"))};
        const Comparison comparison = fleet::compareReports(reports);
        QCOMPARE(comparison.differences.size(), 2);
        QCOMPARE(comparison.differences.last().group, QStringLiteral("new group"));
    }

    void versionsAndLocalesStayWhatTheyAre_data()
    {
        QTest::addColumn<QString>("value");
        for (const char *value :
             {"7.4.7.2", "4:7.4.7-1+deb12u5", "de_DE.UTF-8", "1920x1080", "16 GiB", "/opt/x/bin",
              "xim", "6.1.0-28-amd64", "0x8086:0x3e92 i915", "/tmp", "/tmp/fixed/name"})
            QTest::newRow(value) << QString::fromLatin1(value);
    }
    void versionsAndLocalesStayWhatTheyAre()
    {
        QFETCH(QString, value);
        Report report;
        report.host = QStringLiteral("de");
        report.user = QStringLiteral("x");
        QCOMPARE(fleet::steadyValue(value, report), value);
    }
};

QTEST_GUILESS_MAIN(ComparisonTest)
#include "tst_comparison.moc"
