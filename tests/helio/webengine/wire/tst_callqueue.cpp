#include <QEventLoop>
#include <QTest>
#include <QTimer>

#include <memory>

#include "helio/webengine/wire/callqueue.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"

namespace {

/// An event loop that waits, as a program's own does; ends with an error when it lasts too long.
class Loop : public QEventLoop
{
public:
    Loop()
    {
        QTimer::singleShot(testsupport::longestWaitMs, this, [this] { exit(1); });
    }
};

} // namespace

class CallQueueTest : public QObject
{
    Q_OBJECT

private slots:
    void callsAreMadeLaterAndInTheirOrder();
    void aLoopThatNeverWaitsMakesThemAsWell();
    void aCallThatRunsALoopLetsTheNextOnesBeMade();
    void aQueueMayEndInItsOwnCall();
};

void CallQueueTest::callsAreMadeLaterAndInTheirOrder()
{
    helio::CallQueue queue;
    Loop loop;
    QList<int> made;
    for (int call = 0; call < 3; ++call)
        queue.add([&made, call] { made.append(call); });
    queue.add([&loop] { loop.quit(); });
    QVERIFY(made.isEmpty());
    QCOMPARE(loop.exec(), 0);
    QCOMPARE(made, (QList<int>{0, 1, 2}));
}

void CallQueueTest::aLoopThatNeverWaitsMakesThemAsWell()
{
    helio::CallQueue queue;
    int made = 0;
    for (int call = 1; call <= 3; ++call) {
        queue.add([&made] { ++made; });
        QTRY_COMPARE_WITH_TIMEOUT(made, call, testsupport::longestWaitMs);
    }
}

void CallQueueTest::aCallThatRunsALoopLetsTheNextOnesBeMade()
{
    helio::CallQueue queue;
    Loop outer;
    Loop inner;
    QStringList seen;
    queue.add([&] {
        seen.append(QStringLiteral("first begins"));
        inner.exec();
        seen.append(QStringLiteral("first ends"));
        outer.quit();
    });
    queue.add([&] {
        seen.append(QStringLiteral("second"));
        inner.quit();
    });
    QCOMPARE(outer.exec(), 0);
    QCOMPARE(seen, (QStringList{QStringLiteral("first begins"), QStringLiteral("second"),
                                QStringLiteral("first ends")}));
}

void CallQueueTest::aQueueMayEndInItsOwnCall()
{
    auto queue = std::make_unique<helio::CallQueue>();
    Loop loop;
    int made = 0;
    queue->add([&] {
        queue.reset();
        ++made;
        loop.quit();
    });
    queue->add([&made] { ++made; });
    QCOMPARE(loop.exec(), 0);
    QCOMPARE(made, 1);
}

HEADLESS_TEST_MAIN(CallQueueTest)
#include "tst_callqueue.moc"
