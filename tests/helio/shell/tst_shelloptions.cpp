#include <QTest>

#include "helio/shell/shelloptions.h"
#include "tests/support/shell/headlesstest.h"

using shell::ShellOptions;

namespace {

ShellOptions parse(const QStringList &words)
{
    return shell::parseShellOptions(QStringList{QStringLiteral("helio-shell")} + words);
}

} // namespace

class ShellOptionsTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutOptionsTheDesktopDecides();
    void everyOptionIsRead();
    void helpNamesEveryOption();
    void wrongUsageIsRefused_data();
    void wrongUsageIsRefused();
};

void ShellOptionsTest::withoutOptionsTheDesktopDecides()
{
    const auto options = parse({});
    QCOMPARE(options.fault, QString());
    QCOMPARE(options.mode, ShellOptions::ShowWindow);
    QCOMPARE(options.page, QStringLiteral("index.html"));
    QCOMPARE(options.action + options.theme + options.language + options.screenshot, QString());
    QCOMPARE(options.debugPort, 0);
}

void ShellOptionsTest::everyOptionIsRead()
{
    const auto options =
        parse({QStringLiteral("--action=check-up"), QStringLiteral("--page"),
               QStringLiteral("crash.html"), QStringLiteral("--theme=dark"),
               QStringLiteral("--graphics=processor"), QStringLiteral("--language=zh_CN"),
               QStringLiteral("--screenshot"), QStringLiteral("/tmp/a.png"),
               QStringLiteral("--debug-port"), QStringLiteral("65535")});
    QCOMPARE(options.fault, QString());
    QCOMPARE(options.action, QStringLiteral("check-up"));
    QCOMPARE(options.page, QStringLiteral("crash.html"));
    QCOMPARE(options.theme, QStringLiteral("dark"));
    QCOMPARE(options.language, QStringLiteral("zh_CN"));
    QCOMPARE(options.graphics, shell::Graphics::Processor);
    QCOMPARE(options.screenshot, QStringLiteral("/tmp/a.png"));
    QCOMPARE(options.debugPort, 65535);
    QCOMPARE(parse({QStringLiteral("--help")}).mode, ShellOptions::PrintHelp);
    QCOMPARE(parse({QStringLiteral("--version")}).mode, ShellOptions::PrintVersion);
}

void ShellOptionsTest::helpNamesEveryOption()
{
    const QString help = shell::shellHelp();
    for (const char *name : {"--action", "--page", "--theme", "--language", "--graphics",
                             "--screenshot", "--debug-port", "--help", "--version"})
        QVERIFY2(help.contains(QLatin1String(name)), name);
}

void ShellOptionsTest::wrongUsageIsRefused_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::newRow("unknown") << QStringList{QStringLiteral("--nothing")};
    QTest::newRow("argument") << QStringList{QStringLiteral("index.html")};
    QTest::newRow("action") << QStringList{QStringLiteral("--action=report")};
    QTest::newRow("no action") << QStringList{QStringLiteral("--action=")};
    QTest::newRow("no page") << QStringList{QStringLiteral("--page=")};
    QTest::newRow("theme") << QStringList{QStringLiteral("--theme=blue")};
    QTest::newRow("graphics") << QStringList{QStringLiteral("--graphics=pencil")};
    QTest::newRow("no graphics") << QStringList{QStringLiteral("--graphics=")};
    QTest::newRow("language") << QStringList{QStringLiteral("--language=C")};
    QTest::newRow("no language") << QStringList{QStringLiteral("--language=")};
    QTest::newRow("screenshot") << QStringList{QStringLiteral("--screenshot=")};
    QTest::newRow("port zero") << QStringList{QStringLiteral("--debug-port=0")};
    QTest::newRow("port below") << QStringList{QStringLiteral("--debug-port=-1")};
    QTest::newRow("port above") << QStringList{QStringLiteral("--debug-port=65536")};
    QTest::newRow("port text") << QStringList{QStringLiteral("--debug-port=1x")};
}

void ShellOptionsTest::wrongUsageIsRefused()
{
    QFETCH(const QStringList, words);
    QVERIFY(!parse(words).fault.isEmpty());
}

HEADLESS_TEST_MAIN(ShellOptionsTest)
#include "tst_shelloptions.moc"
