#include <QDir>

#include <utime.h>

#include "tests/programs/checktool/checkedmachine.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::CheckedMachine;
using testsupport::hasLine;
using testsupport::problems;

/// Fonts and their cache, with the test's own fontconfig settings.
class FontCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { qunsetenv("FONTCONFIG_FILE"); }

    void aMachineWithoutFontsIsAProblem()
    {
        const CheckedMachine checked;
        useFonts(checked, {});
        const QStringList found = problems(checked.check("fonts"));
        QCOMPARE(found.size(), 1);
        QVERIFY(hasLine(found, {QStringLiteral("no fonts at all")}));
    }

    void withoutChineseFontsThatIsAProblem()
    {
        const CheckedMachine checked;
        useFonts(checked, {QStringLiteral("DejaVuSans.ttf")});
        const QStringList lines = checked.check("fonts");
        QCOMPARE(problems(lines).size(), 1);
        QVERIFY(hasLine(lines, {QStringLiteral("✘ No font has Chinese characters"),
                                QStringLiteral("fonts-noto-cjk")}));
        QVERIFY(hasLine(lines, {QStringLiteral("⚠ No font has all characters of Japanese")}));
        QVERIFY(hasLine(lines, {QStringLiteral("⚠ There is no fixed width font")}));
    }

    void aCacheThatIsOutOfDateIsRenewed()
    {
        const CheckedMachine checked;
        useFonts(checked, {QStringLiteral("DejaVuSans.ttf")});
        QVERIFY(hasLine(checked.check("fonts"), {QStringLiteral("⚠ The font cache was out of date"),
                                                 checked.path(QStringLiteral("fonts"))}));
        QVERIFY(
            hasLine(checked.check("fonts"), {QStringLiteral("✔ The font cache is up to date")}));
    }

    void aDirectoryBelowWhoseCacheIsOutOfDateIsTold()
    {
        const CheckedMachine checked;
        useFonts(checked, {QStringLiteral("below/DejaVuSans.ttf")});
        checked.check("fonts");
        QVERIFY(
            hasLine(checked.check("fonts"), {QStringLiteral("✔ The font cache is up to date")}));
        const QString below = checked.path(QStringLiteral("fonts/below"));
        const utimbuf longAgo = {1000000000, 1000000000};
        QCOMPARE(utime(QFile::encodeName(below).constData(), &longAgo), 0);
        QVERIFY(hasLine(checked.check("fonts"),
                        {QStringLiteral("⚠ The font cache was out of date"), below}));
    }

    void aCacheThatCannotBeWrittenIsAProblem()
    {
        const CheckedMachine checked;
        useFonts(checked, {QStringLiteral("DejaVuSans.ttf")});
        // A file in place of the directory, which stops even root.
        checked.write(QStringLiteral("cache"), {});
        const QStringList found = problems(checked.check("fonts"));
        QVERIFY(hasLine(found, {QStringLiteral("None of the font cache's directories")}));
        QVERIFY(hasLine(found, {QStringLiteral("The font cache is out of date")}));
    }

    void oneFamilyCanBeAskedFor()
    {
        const CheckedMachine checked;
        useFonts(checked, {QStringLiteral("DejaVuSans.ttf")});
        QCOMPARE(problems(checked.check("fonts", QStringLiteral("dejavu sans"))), QStringList());
        QVERIFY(hasLine(
            problems(checked.check("fonts", QStringLiteral("SimSun"))),
            {QStringLiteral("The font SimSun is not installed"), QStringLiteral("DejaVu Sans")}));
    }

private:
    /// Leaves the machine only these fonts of the package fonts-dejavu-core.
    static void useFonts(const CheckedMachine &checked, const QStringList &names)
    {
        const QString fonts = QStringLiteral("fonts/");
        checked.makeDirectory(fonts);
        for (const QString &name : names) {
            checked.makeDirectory(QFileInfo(fonts + name).path());
            QVERIFY(QFile::copy(QStringLiteral("/usr/share/fonts/truetype/dejavu/") +
                                    QFileInfo(name).fileName(),
                                checked.path(fonts + name)));
        }
        const QByteArray directory = QFile::encodeName(checked.path({}));
        const QString file =
            checked.write(QStringLiteral("fonts.conf"), "<fontconfig><dir>" + directory +
                                                            "/fonts</dir><cachedir>" + directory +
                                                            "/cache</cachedir></fontconfig>");
        qputenv("FONTCONFIG_FILE", QFile::encodeName(file));
    }
};

HEADLESS_TEST_MAIN(FontCheckTest)
#include "tst_fontcheck.moc"
