#include <QJsonArray>

#include "helio/ctl/commandline.h"
#include "tests/support/shell/headlesstest.h"

namespace {

ctl::CommandLine parse(const QStringList &words)
{
    return ctl::parseCommandLine(QStringList{QStringLiteral("assistantctl")} + words);
}

QStringList words(const char *line)
{
    return QString::fromUtf8(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

/// How the arguments of assistantctl are parsed.
class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void aBareCommandHasTheDefaults()
    {
        const auto line = parsed("getcollectionpage");
        QCOMPARE(line.fault, QString());
        QCOMPARE(line.mode, ctl::CommandLine::SingleCommand);
        QCOMPARE(line.command, QStringLiteral("getcollectionpage"));
        QCOMPARE(line.page, QStringLiteral("main"));
        QVERIFY(line.args.isEmpty() && line.choices.isEmpty() && line.untilCallback.isEmpty());
        QVERIFY(!line.waitMs && !line.opensReally && !line.traces && !line.pretty);
    }

    void everyOptionIsRead()
    {
        const auto line = parsed("--page child --choose /a --choose b --wait 500 --until done "
                                 "--open --trace --pretty router page=x");
        QCOMPARE(line.fault, QString());
        QCOMPARE(line.page, QStringLiteral("child"));
        QCOMPARE(line.choices, QStringList({QStringLiteral("/a"), QStringLiteral("b")}));
        QCOMPARE(line.waitMs, std::optional<int>(500));
        QCOMPARE(line.untilCallback, QStringLiteral("done"));
        QVERIFY(line.opensReally && line.traces && line.pretty);
        QCOMPARE(line.command, QStringLiteral("router"));
    }

    void optionsMayFollowTheCommand()
    {
        const auto line = parsed("router page=x --page=child --wait=0");
        QCOMPARE(line.fault, QString());
        QCOMPARE(line.page, QStringLiteral("child"));
        QCOMPARE(line.waitMs, std::optional<int>(0));
        QCOMPARE(line.args.size(), 1);
    }

    void anArgumentIsATextOrAnyJson_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QJsonValue>("value");
        const auto row = [](const char *argument, const char *name, const QJsonValue &value) {
            QTest::newRow(argument)
                << QString::fromUtf8(argument) << QString::fromUtf8(name) << value;
        };
        row("a=b", "a", QStringLiteral("b"));
        row("a=", "a", QString());
        row("a=b=c", "a", QStringLiteral("b=c"));
        row("a==b", "a", QStringLiteral("=b"));
        row("a=b:=c", "a", QStringLiteral("b:=c"));
        row("a=5", "a", QStringLiteral("5"));
        row("a=\xe6\x96\x87", "a", QStringLiteral("\u6587"));
        row("a= b ", "a", QStringLiteral(" b "));
        row("a:=5", "a", 5);
        row("a:=-1.5e3", "a", -1500);
        row("a:=true", "a", true);
        row("a:=null", "a", QJsonValue());
        row("a:=\"x\"", "a", QStringLiteral("x"));
        row("a:=[1,[2]]", "a", QJsonArray{1, QJsonArray{2}});
        row("a:={\"b\":{}}", "a", QJsonObject{{QStringLiteral("b"), QJsonObject()}});
        row("a:= 7 ", "a", 7);
        row("a:b=c", "a:b", QStringLiteral("c"));
    }

    void anArgumentIsATextOrAnyJson()
    {
        QFETCH(QString, argument);
        QFETCH(QString, name);
        QFETCH(QJsonValue, value);
        const ctl::CommandLine line = parse({QStringLiteral("router"), argument});
        QCOMPARE(line.fault, QString());
        QCOMPARE(line.args, (QJsonObject{{name, value}}));
    }

    void theLastOfTwoArgumentsOfANameCounts()
    {
        const auto line = parsed("router a=1 a:=2");
        QCOMPARE(line.fault, QString());
        QCOMPARE(line.args, (QJsonObject{{QStringLiteral("a"), 2}}));
    }

    void threeMegabytesAreRead()
    {
        const QString large(3 << 20, QLatin1Char('x'));
        const auto line = parse({QStringLiteral("router"), QStringLiteral("a=") + large});
        QCOMPARE(line.fault, QString());
        QCOMPARE(line.args.value(QLatin1String("a")).toString(), large);
    }

    void wrongUsageIsExplained_data()
    {
        QTest::addColumn<QString>("line");
        for (const char *line : {"",
                                 "--page other router",
                                 "--page Main router",
                                 "--page",
                                 "--wait x router",
                                 "--wait -1 router",
                                 "--wait 99999999999 router",
                                 "--wait 1.5 router",
                                 "--until= router",
                                 "--unknown router",
                                 "router word",
                                 "router =value",
                                 "router :=5",
                                 "router a:=",
                                 "router a:=x",
                                 "router a:=1,2",
                                 "router a:=1],[2",
                                 "router a:={",
                                 "--session router",
                                 "--commands router",
                                 "--session --commands"})
            QTest::newRow(*line ? line : "nothing") << QString::fromLatin1(line);
    }

    void wrongUsageIsExplained()
    {
        QFETCH(QString, line);
        const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        QVERIFY(!parse(words).fault.isEmpty());
    }

    void theModesAreRead()
    {
        QCOMPARE(parsed("--session --trace").mode, ctl::CommandLine::Session);
        QVERIFY(parsed("--session --trace").traces);
        QCOMPARE(parsed("--commands").mode, ctl::CommandLine::ListCommands);
        QCOMPARE(parsed("--help").mode, ctl::CommandLine::ShowText);
        QVERIFY(parsed("--help").text.contains(QStringLiteral("--until")));
        QCOMPARE(parsed("--version").mode, ctl::CommandLine::ShowText);
        QVERIFY(parsed("--version").text.startsWith(QStringLiteral("assistantctl ")));
    }

private:
    static ctl::CommandLine parsed(const char *line) { return parse(words(line)); }
};

HEADLESS_TEST_MAIN(CommandLineTest)
#include "tst_commandline.moc"
