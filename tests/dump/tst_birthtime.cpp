#include <QDir>
#include <QFile>

#include <ctime>

#include <dlfcn.h>
#include <sys/stat.h>

#include "dump/dumpfiles.h"
#include "dump/kdumphelp.h"
#include "tests/support/shell/headlesstest.h"

namespace {

constexpr std::time_t twoHours = 7200;

bool hasBirthTime = true;
std::time_t changeOffset = 0;

} // namespace

/// The file system as the test wants it, for files whose name ends in "dmp".
extern "C" __attribute__((visibility("default"))) int
statx(int directory, const char *path, int flags, unsigned int mask, struct statx *result)
{
    using Function = int (*)(int, const char *, int, unsigned int, struct statx *);
    static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "statx"));
    const int status = real(directory, path, flags, mask, result);
    if (status == 0 && QByteArray(path).endsWith("dmp")) {
        result->stx_mask &= ~static_cast<decltype(result->stx_mask)>(STATX_BTIME);
        result->stx_btime = {};
        if (hasBirthTime) {
            result->stx_mask |= STATX_BTIME;
            result->stx_btime.tv_sec = std::time(nullptr);
        }
        result->stx_ctime.tv_sec = std::time(nullptr) + changeOffset;
    }
    return status;
}

/// The age of a dump where the file system knows no birth time.
class BirthTimeTest : public QObject
{
    Q_OBJECT

private slots:
    static void withoutABirthTimeTheLatestChangeCounts_data()
    {
        QTest::addColumn<bool>("isKnown");
        QTest::addColumn<qint64>("change");
        QTest::addColumn<bool>("isRecent");
        QTest::newRow("known") << true << qint64{twoHours} << true;
        QTest::newRow("unknown, changed now") << false << qint64{0} << true;
        QTest::newRow("unknown, changed in the future") << false << qint64{twoHours} << false;
    }

    static void withoutABirthTimeTheLatestChangeCounts()
    {
        QFETCH(bool, isKnown);
        QFETCH(qint64, change);
        QFETCH(bool, isRecent);
        testsupport::PrivateHome::current().writeFile(
            QStringLiteral(".local/share/Orvane/tmp/dump/vyr_1.dmp"), "dump");
        hasBirthTime = isKnown;
        changeOffset = change;
        const OfficeAssiant::KDumpHelp dumps;
        QCOMPARE(dumps.hasRecentDump(), isRecent);
    }
};

HEADLESS_TEST_MAIN(BirthTimeTest)
#include "tst_birthtime.moc"
