#include "dump/dumpfiles.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include "tests/support/shell/headlesstest.h"
#include "tests/support/unprivileged.h"

using namespace OfficeAssiant;

/// Which files of the dump directory are dumps, which is the newest, and what counts as recent.
class DumpFilesTest : public QObject
{
    Q_OBJECT

private:
    static void makeDump(const QString &name, int ageInSeconds)
    {
        QFile file(dumpDirectory() + QLatin1Char('/') + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-ageInSeconds),
                                 QFile::FileModificationTime));
    }

    static QString inDumpDirectory(const char *name)
    {
        return dumpDirectory() + QLatin1Char('/') + QLatin1String(name);
    }

private slots:
    void init() { QVERIFY(QDir().mkpath(dumpDirectory())); }

    void cleanup() { QVERIFY(QDir(dumpDirectory()).removeRecursively()); }

    void theDumpDirectoryIsBelowTheSuitesHome()
    {
        QCOMPARE(dumpDirectory(),
                 testsupport::PrivateHome::current().suiteHome() + QStringLiteral("/tmp/dump"));
    }

    void wholeNamesMatchThePattern_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isDump");
        const auto row = [](const char *name, bool isDump) {
            QTest::newRow(name) << QString::fromLatin1(name) << isDump;
        };
        row("tbl_1.dmp", true);
        row("vyr_12.dmp", true);
        row("vyrpdf_3.dmp", true);
        row("vyroffice_0.dmp", true);
        // The dot matches any character.
        row("shw_99xdmp", true);
        row("vyr_.dmp", false);
        row("VYR_1.dmp", false);
        row("core_1.dmp", false);
        row("vyr_1.dmp.bak", false);
        row("xvyr_1.dmp", false);
    }

    void wholeNamesMatchThePattern()
    {
        QFETCH(const QString, name);
        QFETCH(const bool, isDump);
        makeDump(name, 0);
        QCOMPARE(!newestDumpPath().isEmpty(), isDump);
        QCOMPARE(isDumpName(name), isDump);
    }

    void aMissingDirectoryHasNoNewestDump()
    {
        QVERIFY(QDir().rmdir(dumpDirectory()));
        QVERIFY(newestDumpPath().isNull());
    }

    void aFileInPlaceOfTheDirectoryHasNoNewestDump()
    {
        QVERIFY(QDir().rmdir(dumpDirectory()));
        QFile file(dumpDirectory());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(newestDumpPath().isNull());
        QVERIFY(file.remove());
    }

    void theNewestMatchingFileDecidesAndANewerOtherFileIsSkipped()
    {
        makeDump(QStringLiteral("vyr_1.dmp"), 300);
        makeDump(QStringLiteral("tbl_2.dmp"), 100);
        makeDump(QStringLiteral("shw_3.dmp"), 200);
        makeDump(QStringLiteral("notes.txt"), 0);
        QCOMPARE(newestDumpPath(), inDumpDirectory("tbl_2.dmp"));
    }

    void aDirectoryNamedLikeADumpIsNone()
    {
        QVERIFY(QDir(dumpDirectory()).mkdir(QStringLiteral("vyr_1.dmp")));
        QVERIFY(newestDumpPath().isNull());
    }

    void anUnreadableDumpIsSkipped()
    {
        makeDump(QStringLiteral("vyr_1.dmp"), 100);
        makeDump(QStringLiteral("vyr_2.dmp"), 0);
        QFile::setPermissions(inDumpDirectory("vyr_2.dmp"), QFile::WriteOwner);
        QVERIFY(testsupport::holdsUnprivileged(
            [] { return newestDumpPath() == inDumpDirectory("vyr_1.dmp"); }));
    }

    void ofTwoDumpsOfTheSameTimeTheFirstByNameIsTheNewest()
    {
        const QDateTime time = QDateTime::currentDateTime().addSecs(-60);
        for (const char *name : {"vyr_2.dmp", "tbl_9.dmp", "vyr_1.dmp"}) {
            QFile file(inDumpDirectory(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            QVERIFY(file.setFileTime(time, QFile::FileModificationTime));
        }
        QCOMPARE(newestDumpPath(), inDumpDirectory("tbl_9.dmp"));
    }

    void everyPastStampIsRecentAndOneFarAheadIsNot()
    {
        const QDateTime now = QDateTime::currentDateTime();
        QVERIFY(hasRecentStamp(now, now));
        QVERIFY(hasRecentStamp(now.addYears(-40), now));
        QVERIFY(hasRecentStamp(now.addSecs(1799), now));
        QVERIFY(!hasRecentStamp(now.addSecs(1800), now));
        QVERIFY(!hasRecentStamp(now.addSecs(86400), now));
    }

    void onlyThirtyTwoBitsOfTheDistanceCount()
    {
        const QDateTime now = QDateTime::currentDateTimeUtc();
        const qint64 wholeRange = Q_INT64_C(1) << 32;
        QVERIFY(hasRecentStamp(now.addSecs(wholeRange), now));
        QVERIFY(hasRecentStamp(now.addSecs(wholeRange + 1799), now));
        QVERIFY(!hasRecentStamp(now.addSecs(wholeRange + 1800), now));
        QVERIFY(!hasRecentStamp(now.addSecs(-wholeRange / 2 - 1), now));
    }

    void anUnknownStampCountsAsNow()
    {
        QVERIFY(hasRecentStamp(QDateTime(), QDateTime::currentDateTime()));
    }

    void aHundredThousandFilesAreLookedThrough()
    {
        for (int number = 0; number < 100000; ++number) {
            QFile file(QStringLiteral("%1/vyr_%2.dmp").arg(dumpDirectory()).arg(number));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        makeDump(QStringLiteral("tbl_7.dmp"), -60);
        QCOMPARE(newestDumpPath(), inDumpDirectory("tbl_7.dmp"));
    }
};

HEADLESS_TEST_MAIN(DumpFilesTest)
#include "tst_dumpfiles.moc"
