#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>
#include <private/qthread_p.h>

#include "tests/helio/runtime/search/searchplacetest.h"
#include "tests/helio/runtime/search/searchrecorder.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::list;
using testsupport::SearchRecorder;
using testsupport::text;

namespace {

bool hasPostedEvent()
{
    QPostEventList &events = QThreadData::get2(QThread::currentThread())->postEventList;
    const QMutexLocker lock(&events.mutex);
    return events.size() > events.startOffset;
}

/// Waits for a posted event without running an event loop.
bool waitForPostedEvent()
{
    const QDeadlineTimer deadline(testsupport::longestWaitMs);
    while (!hasPostedEvent() && !deadline.hasExpired())
        QThread::msleep(1);
    return !deadline.hasExpired();
}

/// Counts the program's timer events during its lifetime.
class TimerEventCount : public QObject
{
public:
    TimerEventCount() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Timer)
            ++count;
        return QObject::eventFilter(watched, event);
    }

    int count = 0;
};

} // namespace

/// The order of hits and of the end of a search, whatever a receiver does.
class SearchHitsTest : public testsupport::SearchPlaceTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }

    void stoppingReportsNothingMore()
    {
        for (int number = 0; number < 500; ++number)
            m_place->makeFile("report" + QByteArray::number(number));
        m_place->makeFile("other");
        QVERIFY(m_place->refresh());
        SearchRecorder recorder;
        QObject::connect(&recorder.search, &KFsSearch::SigGetContentHasKey, &recorder.search,
                         [&recorder] {
                             if (recorder.paths.size() == 3)
                                 recorder.search.StopSearch();
                         });
        recorder.start(text("report"));
        QVERIFY(recorder.waitForHits(3));
        recorder.search.DoSearchFileName(text("other"), {}, false);
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.ends, 1);
        QCOMPARE(recorder.paths.size(), 4);
        QVERIFY(recorder.paths.constLast().endsWith(text("/other")));
    }

    void aSearchEndsTheOneBeforeIt()
    {
        m_place->makeFile("report1");
        m_place->makeFile("other");
        QVERIFY(m_place->refresh());
        SearchRecorder recorder;
        recorder.start(text("report1"));
        QCOMPARE(recorder.namesOf(text("other")), list("other"));
        QCOMPARE(recorder.keywords, list("other"));
        QCOMPARE(recorder.ends, 1);
    }

    void aHitMayStartTheNextSearch()
    {
        m_place->makeFile("report1");
        m_place->makeFile("report2");
        m_place->makeFile("other");
        QVERIFY(m_place->refresh());
        SearchRecorder recorder;
        QObject::connect(&recorder.search, &KFsSearch::SigGetContentHasKey, &recorder.search,
                         [&recorder](const QString &, const QString &keyword) {
                             if (keyword == text("report"))
                                 recorder.search.DoSearchFileName(text("other"), {}, false);
                         });
        recorder.start(text("report"));
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.keywords, (QStringList{text("report"), text("other")}));
        QCOMPARE(recorder.ends, 1);
    }

    void anEventLoopInsideAHitKeepsTheOrder()
    {
        for (int number = 0; number < 20; ++number)
            m_place->makeFile("report" + QByteArray::number(number));
        QVERIFY(m_place->refresh());
        SearchRecorder recorder;
        int endsInside = -1;
        QObject::connect(&recorder.search, &KFsSearch::SigGetContentHasKey, &recorder.search,
                         [&recorder, &endsInside] {
                             if (endsInside < 0) {
                                 endsInside = 0;
                                 recorder.waitForEnd();
                                 endsInside = recorder.ends;
                             }
                         });
        recorder.start(text("report"));
        QVERIFY(recorder.waitForEnd());
        QVERIFY(QTest::qWaitFor([&] { return endsInside > 0; }, testsupport::longestWaitMs));
        QCOMPARE(recorder.ends, 1);
        QCOMPARE(recorder.paths.size(), 20);
    }

    void theSearchMayBeDeletedInsideAHit()
    {
        m_place->makeFile("report1");
        m_place->makeFile("report2");
        auto *search = new KFsSearch;
        int hits = 0;
        QObject::connect(search, &KFsSearch::SigGetContentHasKey, search, [&] {
            ++hits;
            delete search;
        });
        search->DoSearchFileName(text("report"), {}, false);
        QVERIFY(QTest::qWaitFor([&] { return hits > 0; }, testsupport::longestWaitMs));
        QCoreApplication::processEvents();
        QCOMPARE(hits, 1);
    }

    void aSearchThatIsStoppedBeforeItsFirstHitLeavesTheEventLoopAtRest()
    {
        SearchRecorder recorder;
        QCoreApplication::sendPostedEvents();
        recorder.start(text("report"));
        // The search has posted an event, and the event loop has not run yet.
        QVERIFY(waitForPostedEvent());
        recorder.search.StopSearch();
        const TimerEventCount timerEvents;
        for (int turn = 0; turn < 20; ++turn)
            QCoreApplication::processEvents();
        QCOMPARE(recorder.ends, 0);
        QCOMPARE(timerEvents.count, 0);
    }

    void theEventLoopGoesOnBetweenHits()
    {
        for (int number = 0; number < 200; ++number)
            m_place->makeFile("report" + QByteArray::number(number));
        QVERIFY(m_place->refresh());
        SearchRecorder recorder;
        QObject::connect(&recorder.search, &KFsSearch::SigGetContentHasKey, &recorder.search, [] {
            QElapsedTimer busy;
            busy.start();
            while (!busy.hasExpired(1)) {
            }
        });
        int turns = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (!recorder.paths.isEmpty() && recorder.ends == 0)
                ++turns;
        });
        timer.start(0);
        recorder.start(text("report"));
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.paths.size(), 200);
        QVERIFY2(turns >= 15, qPrintable(QString::number(turns)));
    }
};

HEADLESS_TEST_MAIN(SearchHitsTest)
#include "tst_searchhits.moc"
