#include "tests/input/inputmachinetest.h"
#include "tests/support/shell/headlesstest.h"

/// Where the checker expects the address file of a running ibus.
class InputBusFileTest : public InputMachineTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theBusFileIsNamedAfterTheDisplay_data()
    {
        QTest::addColumn<QByteArray>("display");
        QTest::addColumn<QString>("ending");
        QTest::newRow("with screen") << QByteArray(":1.0") << QStringLiteral("-unix-1");
        QTest::newRow("other host") << QByteArray("otherhost:2") << QStringLiteral("-unix-2");
        QTest::newRow("address with dots")
            << QByteArray("10.0.0.1:12.3") << QStringLiteral("-unix-12");
        QTest::newRow("unset") << QByteArray() << QStringLiteral("-unix-");
        QTest::newRow("no colon") << QByteArray("3") << QStringLiteral("-unix-3");
        QTest::newRow("no colon, dot") << QByteArray("3.1") << QStringLiteral("-unix-3");
        QTest::newRow("dot at the start") << QByteArray(".5") << QStringLiteral("-unix-.5");
        QTest::newRow("two colons") << QByteArray("h::4") << QStringLiteral("-unix-:4");
    }

    void theBusFileIsNamedAfterTheDisplay()
    {
        QFETCH(QByteArray, display);
        QFETCH(QString, ending);
        runIbus();
        if (!display.isNull())
            qputenv("DISPLAY", display);
        QCOMPARE(check(), QStringLiteral("ERR_NOT_FIND_BUSCONFIG"));
        QCOMPARE(debugMessages(), QStringList{busDirectory() + machineIdText + ending});
        writeFile(busDirectory() + machineIdText + ending, "address");
        QCOMPARE(check(), QStringLiteral("ERR_OK"));
        QCOMPARE(debugMessages().size(), 2);
    }

    void onWaylandTheDisplaysOwnFileIsTakenIfThereIsOne()
    {
        runIbus();
        qputenv("DISPLAY", ":1");
        qputenv("XDG_SESSION_TYPE", "wayland");
        qputenv("WAYLAND_DISPLAY", "wayland-0");
        const QString base = busDirectory() + machineIdText;
        QCOMPARE(check(), QStringLiteral("ERR_NOT_FIND_BUSCONFIG"));
        writeFile(base + QStringLiteral("-unix-1"), "address");
        QCOMPARE(check(), QStringLiteral("ERR_OK"));
        writeFile(base + QStringLiteral("-unix-wayland-0"), "address");
        QCOMPARE(check(), QStringLiteral("ERR_OK"));
        const QStringList lookedFor{base + QStringLiteral("-unix-1"),
                                    base + QStringLiteral("-unix-1"),
                                    base + QStringLiteral("-unix-wayland-0")};
        QCOMPARE(debugMessages(), lookedFor);
    }

    void theWaylandFileCountsOnlyInASessionOfExactlyThatType()
    {
        runIbus();
        qputenv("DISPLAY", ":1");
        qputenv("XDG_SESSION_TYPE", "Wayland");
        qputenv("WAYLAND_DISPLAY", "wayland-0");
        writeFile(busDirectory() + machineIdText + QStringLiteral("-unix-wayland-0"), "address");
        QCOMPARE(check(), QStringLiteral("ERR_NOT_FIND_BUSCONFIG"));
    }

    void aMachineIdThatCannotBeReadLeavesItsPlaceEmpty_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("missing") << QStringLiteral("nowhere");
        QTest::newRow("directory") << QStringLiteral("proc");
    }

    void aMachineIdThatCannotBeReadLeavesItsPlaceEmpty()
    {
        QFETCH(QString, file);
        m_system.machineIdFile = m_machine->filePath(file);
        runIbus();
        qputenv("DISPLAY", ":1");
        QCOMPARE(check(), QStringLiteral("ERR_NOT_FIND_BUSCONFIG"));
        QCOMPARE(debugMessages(), QStringList{busDirectory() + QStringLiteral("-unix-1")});
    }

    void onlyOneLineFeedIsTakenFromTheMachineId()
    {
        writeFile(m_system.machineIdFile, "id\r\n");
        runIbus();
        check();
        QCOMPARE(debugMessages(), QStringList{busDirectory() + QStringLiteral("id\r-unix-")});
    }
};

HEADLESS_TEST_MAIN(InputBusFileTest)
#include "tst_inputbusfile.moc"
