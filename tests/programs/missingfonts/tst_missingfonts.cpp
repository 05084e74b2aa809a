#include <QProcess>

#include "programs/missingfonts/matching/familyaliases.h"
#include "programs/missingfonts/matching/missingfonts.h"
#include "tests/support/shell/headlesstest.h"

using programs::FontMatcher;

namespace {

/// What fc-match answers for a list of families.
QString fontOf(const QString &families)
{
    QProcess process;
    process.start(QStringLiteral("fc-match"),
                  {QStringLiteral("--format=%{file} %{index}"), families});
    if (!process.waitForFinished(30000) || process.exitCode() != 0)
        qFatal("fc-match does not run");
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// A machine with three fonts, one of which stands in for another.
FontMatcher::Match matchOnSmallMachine(const QString &family)
{
    if (family == QStringLiteral("宋体") || family == QStringLiteral("Present"))
        return {FontMatcher::Presence::Present, family};
    if (family == QStringLiteral("Aliased"))
        return {FontMatcher::Presence::Substituted, QStringLiteral("Present")};
    return {FontMatcher::Presence::Missing, QStringLiteral("Default")};
}

programs::FontReport report(const QStringList &names)
{
    std::vector<programs::UsedFamily> families;
    for (const QString &name : names)
        families.push_back({name, {}});
    return programs::reportFonts(families, matchOnSmallMachine);
}

} // namespace

/// Which of a document's families are missing on a machine.
class MissingFontsTest : public QObject
{
    Q_OBJECT

private slots:
    void missingFamiliesAreSortedAndStandOnce()
    {
        QCOMPARE(report({QStringLiteral("Zeta"), QStringLiteral("Alpha"), QStringLiteral("Present"),
                         QStringLiteral("zeta")})
                     .missing,
                 (QStringList{QStringLiteral("Alpha"), QStringLiteral("Zeta")}));
    }

    void substitutedFamiliesAreNotMissing()
    {
        const programs::FontReport found = report({QStringLiteral("Aliased")});
        QCOMPARE(found.missing, QStringList());
        QCOMPARE(found.substituted, QStringList{QStringLiteral("Aliased: Present")});
    }

    void aFamilyIsFoundByItsNameInEitherScript()
    {
        QCOMPARE(report({QStringLiteral("SimSun"), QStringLiteral("simsun")}).missing,
                 QStringList());
        QCOMPARE(programs::familyAliases(QStringLiteral("微软雅黑")),
                 programs::familyAliases(QStringLiteral("microsoft yahei")));
    }

    void bothNamesOfAMissingFamilyAreOne()
    {
        QCOMPARE(report({QStringLiteral("楷体")}).missing, QStringList{QStringLiteral("楷体")});
        QCOMPARE(report({QStringLiteral("楷体"), QStringLiteral("KaiTi")}).missing,
                 QStringList{QStringLiteral("KaiTi")});
    }

    void alternativesOfTheDocumentAreTriedInTurn()
    {
        QCOMPARE(report({QStringLiteral("Nowhere;Present")}).missing, QStringList());
        QCOMPARE(report({QStringLiteral("Nowhere;Neither")}).missing,
                 QStringList{QStringLiteral("Nowhere")});
        QCOMPARE(programs::reportFonts({{QStringLiteral("Nowhere"), QStringLiteral("Present")}},
                                       matchOnSmallMachine)
                     .missing,
                 QStringList());
        QCOMPARE(programs::reportFonts(
                     {{QStringLiteral("Nowhere"), QStringLiteral("Neither,, Present")}},
                     matchOnSmallMachine)
                     .missing,
                 QStringList());
    }

    void fontconfigIsAskedAsARendererDoes_data()
    {
        QTest::addColumn<QString>("family");
        for (const char *family :
             {"DejaVu Sans", "dejavu sans mono", "Arial", "Times New Roman", "Courier New",
              "Helvetica", "monospace", "No Such Family", "Noto Sans CJK SC", "SimSun", "Calibri"})
            QTest::newRow(family) << QString::fromLatin1(family);
    }

    void fontconfigIsAskedAsARendererDoes()
    {
        QFETCH(QString, family);
        const bool found =
            fontOf(family + QStringLiteral(",serif")) == fontOf(family + QStringLiteral(",sans"));
        const FontMatcher matcher;
        const FontMatcher::Match match = matcher.match(family);
        QCOMPARE(match.presence != FontMatcher::Presence::Missing, found);
    }

    void installedSubstitutedAndMissingFamiliesDiffer()
    {
        const FontMatcher matcher;
        QCOMPARE(matcher.match(QStringLiteral("DejaVu Sans")).presence,
                 FontMatcher::Presence::Present);
        QCOMPARE(matcher.match(QStringLiteral("monospace")).presence,
                 FontMatcher::Presence::Substituted);
        QCOMPARE(matcher.match(QStringLiteral("No Such Family")).presence,
                 FontMatcher::Presence::Missing);
    }
};

HEADLESS_TEST_MAIN(MissingFontsTest)
#include "tst_missingfonts.moc"
