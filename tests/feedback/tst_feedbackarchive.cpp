#include "feedback/feedbackarchive.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include "dump/dumpfiles.h"
#include "tests/support/shell/headlesstest.h"

using namespace OfficeAssiant;

/// The nine arguments of the archiving script.
class FeedbackArchiveTest : public QObject
{
    Q_OBJECT

private:
    static void makeDump(const QString &name)
    {
        QFile file(dumpDirectory() + QLatin1Char('/') + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    static QStringList dumpsOf(const QString &list)
    {
        QStringList dumps = list.split(QLatin1Char(';'));
        // The list starts with its separator.
        if (dumps.takeFirst() != QString())
            qWarning("no separator at the start of %s", qPrintable(list));
        dumps.sort();
        return dumps;
    }

private slots:
    void init() { QVERIFY(QDir().mkpath(dumpDirectory())); }

    void cleanup()
    {
        QVERIFY(QDir(dumpDirectory()).removeRecursively());
        qunsetenv("HELIO_RESOURCES");
    }

    void thereAreNineArgumentsInAFixedOrder()
    {
        qputenv("HELIO_RESOURCES", "/opt/orvane/my office");
        FeedbackRequest request;
        request.archivePath = QStringLiteral("/home/u/report");
        request.type = QStringLiteral("crash");
        request.description = QStringLiteral("first line\nsecond; line");
        const QString no = QStringLiteral("false");
        QCOMPARE(archiveArguments(request, false),
                 (QStringList{QStringLiteral("/home/u/report"), QStringLiteral("crash"),
                              QStringLiteral("first line\nsecond; line"), QString(), no, no, no,
                              QString(), QStringLiteral("/opt/orvane/my office")}));
    }

    void emptyFilesAreLeftOutOfTheFileList()
    {
        FeedbackRequest request;
        request.files =
            QStringList{QStringLiteral("a.vyr"), QString(), QStringLiteral("b.png"), QString()};
        QCOMPARE(archiveArguments(request, false).at(3), QStringLiteral(";a.vyr;b.png"));
    }

    void everyFlagHasItsOwnPlace()
    {
        const auto flags = [](const FeedbackRequest &request, bool report) {
            return archiveArguments(request, report).mid(4, 3).join(QLatin1Char(' '));
        };
        FeedbackRequest settings;
        settings.withSuiteSettings = true;
        FeedbackRequest dumps;
        dumps.withDumps = true;
        QCOMPARE(flags({}, true), QStringLiteral("true false false"));
        QCOMPARE(flags(settings, false), QStringLiteral("false true false"));
        QCOMPARE(flags(dumps, false), QStringLiteral("false false true"));
    }

    void theReportsFlagTellsWhetherThereIsOneAndNotWhetherItWasWanted()
    {
        FeedbackRequest request;
        request.withSystemReport = true;
        QCOMPARE(archiveArguments(request, false).at(4), QStringLiteral("false"));
    }

    void dumpsAreSearchedForAndNotMatchedWhole()
    {
        for (const char *name : {"vyr_3.dmp", "vyr_3.dmp.old", "core.vyr_1.dmp", "VYR_1.dmp",
                                 "readme.txt", "vyr_.dmp"})
            makeDump(QLatin1String(name));
        QVERIFY(QDir(dumpDirectory()).mkdir(QStringLiteral("vyr_9.dmp")));
        FeedbackRequest request;
        request.withDumps = true;
        const QString prefix = dumpDirectory() + QLatin1Char('/');
        QCOMPARE(dumpsOf(archiveArguments(request, false).at(7)),
                 (QStringList{prefix + QStringLiteral("core.vyr_1.dmp"),
                              prefix + QStringLiteral("vyr_3.dmp"),
                              prefix + QStringLiteral("vyr_3.dmp.old")}));
    }

    void dumpsThatAreNotWantedAreNotListed()
    {
        makeDump(QStringLiteral("vyr_3.dmp"));
        QCOMPARE(archiveArguments({}, false).at(7), QString());
    }

    void withoutADumpDirectoryTheListIsEmpty()
    {
        QVERIFY(QDir().rmdir(dumpDirectory()));
        FeedbackRequest request;
        request.withDumps = true;
        QCOMPARE(archiveArguments(request, false).mid(6, 2),
                 (QStringList{QStringLiteral("true"), QString()}));
        QVERIFY(QDir().mkpath(dumpDirectory()));
    }

    void aDescriptionThatOneArgumentDoesNotHoldIsCutOffBetweenTwoCharacters_data()
    {
        QTest::addColumn<QString>("character");
        QTest::newRow("one byte") << QStringLiteral("a");
        QTest::newRow("three bytes") << QStringLiteral("\u5b57");
        QTest::newRow("four bytes") << QString::fromUtf8("\xf0\x9f\x98\x80");
    }

    void aDescriptionThatOneArgumentDoesNotHoldIsCutOffBetweenTwoCharacters()
    {
        QFETCH(const QString, character);
        FeedbackRequest request;
        request.description = character.repeated(200000);
        const QString description = archiveArguments(request, false).at(2);
        QVERIFY(QFile::encodeName(description).size() < 128 * 1024);
        QVERIFY(QFile::encodeName(description).size() > 128 * 1024 - 10);
        QCOMPARE(description, character.repeated(description.size() / character.size()));
        QCOMPARE(QProcess::execute(QStringLiteral("true"), {description}), 0);
    }

    void theLongestDescriptionThatOneArgumentHoldsStaysWhole()
    {
        FeedbackRequest request;
        request.description = QString(128 * 1024 - 1, QLatin1Char('a'));
        QCOMPARE(archiveArguments(request, false).at(2), request.description);
    }

    void moreDumpsThanOneArgumentHoldsAreCutOffBetweenTwo()
    {
        for (int number = 0; number < 5000; ++number)
            makeDump(QStringLiteral("vyr_%1.dmp").arg(number));
        FeedbackRequest request;
        request.withDumps = true;
        const QString list = archiveArguments(request, false).at(7);
        QVERIFY(QFile::encodeName(list).size() < 128 * 1024);
        QVERIFY(QFile::encodeName(list).size() > 127 * 1024);
        for (const QString &dump : dumpsOf(list))
            QVERIFY2(QFile::exists(dump), qPrintable(dump));
    }
};

HEADLESS_TEST_MAIN(FeedbackArchiveTest)
#include "tst_feedbackarchive.moc"
