#include "host/kfssearch.h"

#include <QElapsedTimer>
#include <QFile>
#include <QPointer>
#include <QRunnable>
#include <QThreadPool>
#include <QTimer>

#include <future>

#include "helio/runtime/search/databasequery.h"
#include "helio/runtime/search/filedatabase.h"
#include "helio/runtime/search/hitqueue.h"
#include "helio/runtime/search/searchlocations.h"
#include "helio/runtime/search/searchrun.h"

using helio::FoundFile;
using helio::HitQueue;

namespace {

// How long hits are reported before other events get their turn.
constexpr int longestSliceMs = 5;

// A stopped search keeps its thread while a file system does not respond.
constexpr int mostThreads = 8;
constexpr int longestStopMs = 3000;

void startRefreshes()
{
    if (!helio::DatabaseQuery::isAvailable() || !helio::FileDatabase::isRefreshable())
        return;
    const QStringList roots = helio::searchRoots();
    for (const QString &root : roots) {
        if (!helio::FileDatabase(root).startRefresh())
            qWarning("the file search cannot refresh its database of %s", qPrintable(root));
    }
}

} // namespace

class Q_DECL_HIDDEN KFsSearch::Private
{
public:
    explicit Private(KFsSearch *search);
    ~Private();

    void start(const QString &keyword, const QString &directory, Qt::CaseSensitivity sensitivity);
    void stop();
    void refresh();

private:
    void deliver();

    KFsSearch *m_search;
    QTimer m_nextSlice;
    QString m_keyword;
    helio::FoundFiles m_taken;
    std::size_t m_nextHit = 0;
    std::shared_ptr<HitQueue> m_hits;
    std::shared_future<void> m_refreshStart;
    std::unique_ptr<QThreadPool> m_threads = std::make_unique<QThreadPool>();
};

KFsSearch::Private::Private(KFsSearch *search) : m_search(search)
{
    m_threads->setMaxThreadCount(mostThreads);
    // Searches are rare: threads do not wait for the next one.
    m_threads->setExpiryTimeout(0);
    // A timer with no delay lets all other events run in between; posted events would not.
    m_nextSlice.setSingleShot(true);
    QObject::connect(&m_nextSlice, &QTimer::timeout, &m_nextSlice, [this] { deliver(); });
}

KFsSearch::Private::~Private()
{
    stop();
    // The threads use nothing of this object, so one that hangs in the kernel can be abandoned.
    if (!m_threads->waitForDone(longestStopMs))
        static_cast<void>(m_threads.release());
}

void KFsSearch::Private::start(const QString &keyword, const QString &directory,
                               Qt::CaseSensitivity sensitivity)
{
    m_keyword = keyword;
    m_hits = std::make_shared<HitQueue>([this] {
        QMetaObject::invokeMethod(
            &m_nextSlice, [this] { deliver(); }, Qt::QueuedConnection);
    });
    const helio::NamePattern pattern(keyword, sensitivity);
    m_threads->start(
        QRunnable::create([pattern, directory, hits = m_hits, refreshStart = m_refreshStart] {
            helio::SearchRun(pattern, directory, hits, refreshStart).run();
        }));
}

void KFsSearch::Private::stop()
{
    m_nextSlice.stop();
    if (m_hits)
        m_hits->stop();
    m_hits.reset();
    m_taken.clear();
    m_nextHit = 0;
}

void KFsSearch::Private::refresh()
{
    const auto started = std::make_shared<std::promise<void>>();
    m_refreshStart = started->get_future().share();
    m_threads->start(QRunnable::create([started] {
        startRefreshes();
        started->set_value();
    }));
}

void KFsSearch::Private::deliver()
{
    // A receiver of a hit may stop the search, start another, run an event loop or delete the
    // search object.
    const QPointer<KFsSearch> alive(m_search);
    const std::shared_ptr<HitQueue> hits = m_hits;
    // Stopped after this call was queued.
    if (!hits)
        return;
    QElapsedTimer slice;
    slice.start();
    // Started now, so that an event loop run by a receiver goes on reporting.
    m_nextSlice.start(0);
    while (alive && m_hits == hits) {
        if (slice.hasExpired(longestSliceMs))
            return;
        if (m_nextHit < m_taken.size()) {
            const FoundFile &hit = m_taken[m_nextHit++];
            emit m_search->SigGetContentHasKey(QFile::decodeName(hit.path), m_keyword,
                                               hit.isDirectory);
            continue;
        }
        m_nextHit = 0;
        m_taken.clear();
        const HitQueue::State state = hits->take(m_taken);
        if (state != HitQueue::State::Hits)
            m_nextSlice.stop();
        if (state == HitQueue::State::Empty)
            return;
        if (state == HitQueue::State::Ended) {
            m_hits.reset();
            emit m_search->searchFinished();
            return;
        }
    }
}

KFsSearch::KFsSearch(QObject *parent) : QObject(parent), d(std::make_unique<Private>(this)) {}

KFsSearch::~KFsSearch() = default;

void KFsSearch::DoSearchFileName(const QString &keyword, const QString &directory,
                                 bool caseSensitive)
{
    d->stop();
    d->start(keyword, directory, caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
}

void KFsSearch::StopSearch()
{
    d->stop();
}

void KFsSearch::RunEverythingDaemon()
{
    d->refresh();
}
