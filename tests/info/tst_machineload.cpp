#include "bridge/kvyrassistanttoolapi.h"
#include "info/machineload.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using namespace OfficeAssiant;
using testsupport::FakePrograms;

namespace {

/// What top prints before its process rows.
const QByteArray topHead = "printf 'top - 10:00\\nTasks\\nCpu\\nMem\\nSwap\\n\\nPID USER\\n'\n";

/// A row of top: process id, user, six columns, processor, memory, time and command.
QByteArray row(int id, double cpu, double memory, const QByteArray &command)
{
    return "echo '" + QByteArray::number(id) + " user 20 0 1 2 3 S " + QByteArray::number(cpu) +
           ' ' + QByteArray::number(memory) + " 0:01.00 " + command + "'\n";
}

QStringList lines(const QJsonArray &tables)
{
    const QJsonObject table = tables.first().toObject();
    QStringList values;
    for (int number = 1; number <= table.size(); ++number)
        values.append(table.value(QString::number(number)).toString(QStringLiteral("missing")));
    return values;
}

} // namespace

/// The heaviest processes and the memory in use.
class MachineLoadTest : public QObject
{
    Q_OBJECT

private slots:
    void processesAreOrderedByProcessorOrMemory()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("top"), "test \"$*\" = '-n 1 -b' || exit 9\n" + topHead +
                                                row(1, 5.5, 40, "low") + row(2, 90, 1.5, "high") +
                                                row(3, 10, 20, "mid dle of more words"));
        QCOMPARE(lines(heaviestProcessesByCpu()),
                 QStringList({QStringLiteral("2 user 1.5 90 high  "),
                              QStringLiteral("3 user 20 10 mid dle of"),
                              QStringLiteral("1 user 40 5.5 low  ")}));
        QCOMPARE(lines(heaviestProcessesByMemory()),
                 QStringList({QStringLiteral("1 user 40 5.5 low  "),
                              QStringLiteral("3 user 20 10 mid dle of"),
                              QStringLiteral("2 user 1.5 90 high  ")}));
    }

    void theTableIsOneObjectInAnArray()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("top"), topHead + row(1, 5, 4, "a"));
        QCOMPARE(
            heaviestProcessesByCpu(),
            QJsonArray({QJsonObject{{QStringLiteral("1"), QStringLiteral("1 user 4 5 a  ")}}}));
    }

    void moreThanTenProcessesGiveTen()
    {
        const FakePrograms programs;
        QByteArray body = topHead;
        for (int id = 1; id <= 15; ++id)
            body += row(id, id, 1, "p");
        programs.add(QStringLiteral("top"), body);
        const QStringList table = lines(heaviestProcessesByCpu());
        QCOMPARE(table.size(), 10);
        QCOMPARE(table.first(), QStringLiteral("15 user 1 15 p  "));
        QCOMPARE(table.last(), QStringLiteral("6 user 1 6 p  "));
    }

    void fewerThanTenProcessesGiveAsManyMembers()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("top"), topHead + row(1, 5, 4, "a") + row(2, 4, 4, "b"));
        QCOMPARE(lines(heaviestProcessesByMemory()).size(), 2);
    }

    void fewerThanEightLinesGiveOneEmptyMember()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("top"), topHead);
        const QJsonArray empty{QJsonObject{{QStringLiteral("1"), QString()}}};
        QCOMPARE(heaviestProcessesByCpu(), empty);
        QCOMPARE(heaviestProcessesByMemory(), empty);
    }

    void withoutTopThereIsOneEmptyMember()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("top"), "exit 1");
        QCOMPARE(lines(heaviestProcessesByCpu()), QStringList{QString()});
    }

    void oddRowsAreKeptInTheirSevenFields()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("top"), topHead + "printf 'x\\n'\n");
        QCOMPARE(lines(heaviestProcessesByCpu()), QStringList{QStringLiteral("x      ")});
    }

    void theRealTopListsProcesses()
    {
        const QStringList table = lines(heaviestProcessesByCpu());
        QVERIFY(!table.isEmpty() && table.size() <= 10);
        for (const QString &line : table) {
            const QStringList fields = line.split(QLatin1Char(' '));
            QCOMPARE(fields.size(), 7);
            QVERIFY2(fields.first().toInt() > 0, qPrintable(line));
        }
    }

    void memoryIsFormattedWithSixDigits_data()
    {
        QTest::addColumn<QString>("figures");
        QTest::addColumn<QString>("percentage");
        QTest::addColumn<QString>("all");
        const auto row = [](const char *figures, const char *percentage, const char *all) {
            QTest::newRow(*figures ? figures : "nothing")
                << QString::fromLatin1(figures) << QString::fromLatin1(percentage)
                << QString::fromLatin1(all);
        };
        row("16255512 6094612", "37.4926", "15.5025");
        row("1048576 1048576", "100", "1");
        row("1048576 0", "0", "1");
        row("1 1", "100", "9.53674e-07");
        row("0 0", "nan", "0");
        row("0 5", "inf", "0");
        row("", "nan", "0");
        row("words here", "nan", "0");
        row("100", "0", "9.53674e-05");
        row("100 x", "0", "9.53674e-05");
        row(" 100 50", "inf", "0");
        row("100 50 25", "50", "9.53674e-05");
        row("-100 50", "-50", "-9.53674e-05");
        row("9000000000000 4500000000000", "50", "8.58307e+06");
        row("99999999999999999999999 5", "inf", "9.53674e+16");
        row("100 inf", "inf", "9.53674e-05");
        row("100 nan", "nan", "9.53674e-05");
    }

    void memoryIsFormattedWithSixDigits()
    {
        QFETCH(QString, figures);
        QFETCH(QString, percentage);
        QFETCH(QString, all);
        QCOMPARE(memoryUseOf(figures), QJsonObject({{QStringLiteral("percentage"), percentage},
                                                    {QStringLiteral("all"), all}}));
    }

    void memoryIsReadFromTheSecondLineOfFree()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("free"),
                     "printf '  total used free\\nMem:  16255512   6094612  1\\nSwap: 5 4 3\\n'");
        QCOMPARE(memoryUse(),
                 QJsonObject({{QStringLiteral("percentage"), QStringLiteral("37.4926")},
                              {QStringLiteral("all"), QStringLiteral("15.5025")}}));
    }

    void oddOutputOfFreeReadsAsNothing()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("free"), "echo one line only");
        QCOMPARE(memoryUse(), memoryUseOf(QString()));
    }

    void theRealMemoryIsPlausible()
    {
        const QJsonObject use = memoryUse();
        const double percentage = use.value(QLatin1String("percentage")).toString().toDouble();
        QVERIFY(percentage > 0 && percentage <= 100);
        QVERIFY(use.value(QLatin1String("all")).toString().toDouble() > 0);
    }

    void theCommandsAnswerTheTables()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("top"), topHead + row(1, 5, 4, "a"));
        programs.add(QStringLiteral("free"), "printf 'head\\nMem: 1048576 524288\\n'");
        testsupport::RecordingShell shell;
        const QJsonObject table{{QStringLiteral("result"), heaviestProcessesByCpu()}};
        QCOMPARE(shell.call(QStringLiteral("getcpuinfo")), table);
        QCOMPARE(shell.call(QStringLiteral("getmemoryinfo")), table);
        QCOMPARE(shell.call(QStringLiteral("getcomputermemory")),
                 QJsonObject({{QStringLiteral("result"),
                               QJsonObject{{QStringLiteral("percentage"), QStringLiteral("50")},
                                           {QStringLiteral("all"), QStringLiteral("1")}}}}));
    }
};

HEADLESS_TEST_MAIN(MachineLoadTest)
#include "tst_machineload.moc"
