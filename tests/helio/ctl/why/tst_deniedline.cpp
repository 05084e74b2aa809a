#include <QTest>

#include "helio/ctl/why/deniedline.h"

using ctl::DeniedLine;
using doctor::Access;

namespace {

DeniedLine parsed(const char *words)
{
    return ctl::parseDeniedLine(
        QString::fromLatin1(words).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

} // namespace

class DeniedLineTest : public QObject
{
    Q_OBJECT

private slots:
    void readingIsAskedWithoutAnAccess()
    {
        const DeniedLine line = parsed("denied /x");
        QCOMPARE(line.fault, QString());
        QCOMPARE(line.path, QStringLiteral("/x"));
        QCOMPARE(line.access, Access::Read);
        QVERIFY(!line.json && !line.fix);
    }

    void optionsStandAnywhere()
    {
        const DeniedLine line = parsed("--json denied --for write x --fix --yes");
        QCOMPARE(line.fault, QString());
        QCOMPARE(line.access, Access::Write);
        QVERIFY(line.json && line.fix && line.yes && !line.dryRun);
        QCOMPARE(parsed("denied --for=run x").access, Access::Run);
        QCOMPARE(parsed("denied -- -x").path, QStringLiteral("-x"));
    }

    void wrongLinesAreFaults_data()
    {
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *words, const char *reason) {
            QTest::newRow(words) << QString::fromLatin1(reason);
        };
        row("", "expected: why denied PATH, why open [FILE|TYPE] or why input [PID]");
        row("other x", "expected: why denied PATH, why open [FILE|TYPE] or why input [PID]");
        row("denied", "why denied takes one path");
        row("denied a b", "why denied takes one path");
        row("denied x --for open", "--for must be read, write or run");
        row("denied x --yes", "--yes belongs to --fix");
        row("denied x --unknown", "Unknown option 'unknown'.");
        row("denied x --for", "Missing value after '--for'.");
    }
    void wrongLinesAreFaults()
    {
        QFETCH(QString, reason);
        QCOMPARE(parsed(QTest::currentDataTag()).fault, reason);
    }

    void theHelpDescribesEveryOption()
    {
        const QString help = ctl::deniedHelp();
        for (const char *option :
             {"--for ACCESS ", "--fix ", "--yes ", "--dry-run ", "--json ", "--help ", "denied"})
            QVERIFY2(help.contains(QLatin1String(option)), option);
    }
};

QTEST_GUILESS_MAIN(DeniedLineTest)
#include "tst_deniedline.moc"
