#include "programs/checktool/checks/findings.h"

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/machine/shellword.h"
#include "tests/support/shell/headlesstest.h"
#include "texts/texts.h"

using programs::Findings;

/// The findings of a check as text for the page.
class FindingsTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutFindingsTheOutcomeStandsAlone()
    {
        QCOMPARE(Findings().text(), QStringLiteral("✔ No problem was found."));
    }

    void findingsAreSaidInChinese()
    {
        texts::useLanguage(QStringLiteral("zh"));
        const QString text = Findings().text();
        texts::useLanguage({});
        QCOMPARE(text, QStringLiteral("✔ 未发现问题。"));
    }

    void commandsToPasteKeepAPathInOneWord()
    {
        QCOMPARE(programs::shellWord(QStringLiteral("/a b/$(c)")), QStringLiteral("'/a b/$(c)'"));
        QCOMPARE(programs::shellWord(QStringLiteral("it's")), QStringLiteral("'it'\\''s'"));
    }

    void problemsComeBeforeNotesAndWhatIsFine()
    {
        Findings findings;
        findings.fine(QStringLiteral("a"));
        findings.note(QStringLiteral("b"));
        findings.problem(QStringLiteral("c"), QStringLiteral("Mend c."));
        findings.problem(QStringLiteral("d"), QStringLiteral("Mend d."));
        QCOMPARE(findings.text(),
                 QStringLiteral("✘ 2 problems were found.\n✘ c Mend c.\n✘ d Mend d.\n⚠ b\n✔ a"));
        QCOMPARE(findings.problemCount(), 2);
    }

    void notesAreNoProblem()
    {
        Findings findings;
        findings.note(QStringLiteral("b"));
        QCOMPARE(findings.text(), QStringLiteral("✔ No problem was found.\n⚠ b"));
    }

    void aFindingStaysOneLineWhateverNamesHold()
    {
        Findings findings;
        findings.fine(QStringLiteral("a\nb\x1b\x7f") + QChar(QChar::Null));
        QCOMPARE(findings.text().section(QLatin1Char('\n'), 1),
                 QStringLiteral("✔ a\\x0ab\\x1b\\x7f\\x00"));
    }

    void longListsAndLinesAreCutAndSaySo()
    {
        Findings findings;
        for (int n = 0; n < 1000; ++n)
            findings.fine(QString(5000, QLatin1Char('x')));
        const QStringList lines = findings.text().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 201);
        QCOMPARE(lines.last(), QStringLiteral("⚠ 801 further lines are left out."));
        QCOMPARE(lines.at(1).size(), 2 + 1000 + 1);
        QVERIFY(lines.at(1).endsWith(QStringLiteral("…")));
    }

    void thatThereIsNoSuchCheckIsAFinding()
    {
        const Findings findings = programs::findingsOf({}, QStringLiteral("nonsense"), {}, {});
        QCOMPARE(findings.problemCount(), 1);
        QVERIFY(findings.text().contains(QStringLiteral("“nonsense”")));
        QVERIFY(findings.text().contains(QStringLiteral("libraries, fonts, locale")));
    }

    void theChecksAreThoseOfThePage()
    {
        QStringList names;
        for (const programs::Check &check : programs::checks()) {
            names.append(check.name);
            QVERIFY(!check.description.isEmpty());
            QVERIFY(!check.argument.isEmpty());
        }
        QCOMPARE(names.join(QLatin1Char(' ')),
                 QStringLiteral("libraries fonts locale space configuration printing display dbus "
                                "input plugins"));
    }
};

HEADLESS_TEST_MAIN(FindingsTest)
#include "tst_findings.moc"
