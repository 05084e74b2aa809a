#include "feedback/feedbackarchive.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <fcntl.h>
#include <unistd.h>

#include "dump/dumpfiles.h"
#include "plugin/config/suitefiles.h"
#include "tests/support/shell/headlesstest.h"

using namespace OfficeAssiant;

/// The nine arguments of the archiving script.
class FeedbackArchiveTest : public QObject
{
    Q_OBJECT

private:
    /// The kernel's limit for one argument, with its zero byte.
    static int mostBytes() { return static_cast<int>(32 * ::sysconf(_SC_PAGESIZE)); }

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
        removePlainFiles(dumpDirectory());
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
        request.description = character.repeated(mostBytes() + 1000);
        const QString description = archiveArguments(request, false).at(2);
        QVERIFY(QFile::encodeName(description).size() < mostBytes());
        QVERIFY(QFile::encodeName(description).size() > mostBytes() - 10);
        const QString note =
            QStringLiteral(" [too long for the archive, left out: the rest of this text]");
        QVERIFY(description.endsWith(note));
        const int length = description.size() - note.size();
        QCOMPARE(description.left(length), character.repeated(length / character.size()));
        QCOMPARE(QProcess::execute(QStringLiteral("true"), {description}), 0);
    }

    void theLongestDescriptionThatOneArgumentHoldsStaysWhole()
    {
        FeedbackRequest request;
        request.description = QString(mostBytes() - 1, QLatin1Char('a'));
        QCOMPARE(archiveArguments(request, false).at(2), request.description);
    }

    void moreDumpsThanOneArgumentHoldsAreCutOffBetweenTwo()
    {
        constexpr int all = 5000;
        for (int number = 0; number < all; ++number)
            makeDump(QStringLiteral("vyr_%1.dmp").arg(number));
        FeedbackRequest request;
        request.withDumps = true;
        request.description = QStringLiteral("it failed");
        const QStringList arguments = archiveArguments(request, false);
        const QString list = arguments.at(7);
        QVERIFY(QFile::encodeName(list).size() < mostBytes());
        QVERIFY(QFile::encodeName(list).size() > mostBytes() - 1024);
        const QStringList dumps = dumpsOf(list);
        for (const QString &dump : dumps)
            QVERIFY2(QFile::exists(dump), qPrintable(dump));
        QCOMPARE(arguments.at(2),
                 QStringLiteral("it failed [too long for the archive, left out: dump files: %1]")
                     .arg(all - dumps.size()));
    }

    void filesAndTypeThatOneArgumentDoesNotHoldAreLeftOutAndNoted()
    {
        FeedbackRequest request;
        request.type = QString(mostBytes() + 1, QLatin1Char('t'));
        request.files = QStringList{QStringLiteral("a.vyr"), QString(mostBytes(), QLatin1Char('f')),
                                    QStringLiteral("b.png")};
        const QStringList arguments = archiveArguments(request, false);
        QCOMPARE(arguments.at(1), QString(mostBytes() - 1, QLatin1Char('t')));
        QCOMPARE(arguments.at(3), QStringLiteral(";a.vyr;b.png"));
        QCOMPARE(arguments.at(2),
                 QStringLiteral(" [too long for the archive, left out: the rest of the type, "
                                "attached files: 1]"));
        QCOMPARE(QProcess::execute(QStringLiteral("true"), arguments), 0);
    }

    void theFourLongestArgumentsTogetherCanBePassed()
    {
        FeedbackRequest request;
        request.type = QString(mostBytes(), QLatin1Char('t'));
        request.description = QString(mostBytes(), QLatin1Char('d'));
        request.files = QStringList{QString(mostBytes() - 2, QLatin1Char('f'))};
        QCOMPARE(QProcess::execute(QStringLiteral("true"), archiveArguments(request, false)), 0);
    }

    void dumpsWhoseNamesReadAlikeAreListedOnce()
    {
        const QByteArray directory = QFile::encodeName(dumpDirectory());
        for (const char *name : {"/vyr_1.dmp.\xff", "/vyr_1.dmp.\xfe"}) {
            const int file = ::open((directory + name).constData(), O_CREAT | O_WRONLY, 0600);
            QVERIFY(file >= 0);
            ::close(file);
        }
        FeedbackRequest request;
        request.withDumps = true;
        QCOMPARE(dumpsOf(archiveArguments(request, false).at(7)),
                 QStringList{dumpDirectory() + QStringLiteral("/vyr_1.dmp.\ufffd")});
    }
};

HEADLESS_TEST_MAIN(FeedbackArchiveTest)
#include "tst_feedbackarchive.moc"
