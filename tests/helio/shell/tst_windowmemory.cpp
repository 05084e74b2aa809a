#include <QTemporaryDir>
#include <QTest>

#include "helio/shell/window/windowmemory.h"

using shell::fittedToScreens;
using shell::RememberedWindow;
using shell::WindowMemory;

class WindowMemoryTest : public QObject
{
    Q_OBJECT

private slots:
    void aWindowIsRememberedInItsFile();
    void withoutAFileNothingIsKept();
    void aWindowIsBroughtToAScreen_data();
    void aWindowIsBroughtToAScreen();
};

void WindowMemoryTest::aWindowIsRememberedInItsFile()
{
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("new/window.ini"));
    WindowMemory(file).keep({QRect(10, 20, 800, 600), true, QStringLiteral("crash.html")});
    const RememberedWindow last = WindowMemory(file).read();
    QCOMPARE(last.area, QRect(10, 20, 800, 600));
    QVERIFY(last.isMaximised);
    QCOMPARE(last.view, QStringLiteral("crash.html"));
}

void WindowMemoryTest::withoutAFileNothingIsKept()
{
    const WindowMemory memory{QString()};
    memory.keep({QRect(10, 20, 800, 600), true, QStringLiteral("crash.html")});
    QVERIFY(!memory.read().area.isValid());
}

void WindowMemoryTest::aWindowIsBroughtToAScreen_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<QRect>("fitted");
    QTest::newRow("stays where it is") << QRect(10, 20, 800, 600) << QRect(10, 20, 800, 600);
    QTest::newRow("stays on the second screen")
        << QRect(1500, 100, 800, 600) << QRect(1500, 100, 800, 600);
    QTest::newRow("on two: the one that shows more")
        << QRect(1300, 0, 800, 600) << QRect(1366, 0, 800, 600);
    QTest::newRow("too large") << QRect(0, 0, 3000, 2000) << QRect(1366, 0, 1920, 1080);
    QTest::newRow("off every screen") << QRect(-5000, -90, 800, 600) << QRect(0, 0, 800, 600);
    QTest::newRow("title bar above") << QRect(50, -40, 800, 600) << QRect(50, 0, 800, 600);
}

void WindowMemoryTest::aWindowIsBroughtToAScreen()
{
    QFETCH(const QRect, area);
    QFETCH(const QRect, fitted);
    QCOMPARE(fittedToScreens(area, {QRect(0, 0, 1366, 768), QRect(1366, 0, 1920, 1080)}), fitted);
}

QTEST_GUILESS_MAIN(WindowMemoryTest)
#include "tst_windowmemory.moc"
