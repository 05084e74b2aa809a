#include "programs/updater/updaterrun.h"

#include <QFile>
#include <QRegularExpression>

#include <sys/stat.h>
#include <unistd.h>

#include "programs/updater/updatelog.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/shell/headlesstest.h"

using programs::InstalledPackage;
using programs::UpdateLog;
using programs::UpdaterConfig;
using programs::UpdaterTask;

/// The updater of the package: its log and its tasks.
class UpdaterTest : public QObject
{
    Q_OBJECT

private:
    static QString logPath()
    {
        return testsupport::PrivateHome::current().path() + QStringLiteral("/update.log");
    }

    static QByteArray logPathBytes() { return QFile::encodeName(logPath()); }

    static QString check(const UpdaterConfig &config, const InstalledPackage &package)
    {
        return programs::outcomeOf(UpdaterTask::ManualCheck, config, QDateTime(),
                                   [&package](const QString &, int) { return package; });
    }

    static QString report(const QString &last, const QDateTime &now)
    {
        return programs::outcomeOf(UpdaterTask::DailyReport,
                                   {{QStringLiteral("usagecollected"), last}}, now, {});
    }

private slots:
    void init() { ::unlink(logPathBytes().constData()); }

    void aLineTellsTimeAndProcessAndStaysOneLine()
    {
        UpdateLog log(logPath());
        QVERIFY(log.append(QStringLiteral("one\ntwo\x1b 日志")));
        const QString text = QString::fromUtf8(testsupport::readFile(logPath()));
        const QRegularExpression line(QStringLiteral(
            "\\A\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\[\\d+\\] one two  日志\n\\z"));
        QVERIFY2(line.match(text).hasMatch(), qPrintable(text));
    }

    void everyUserMayAppendWhateverTheMaskSays()
    {
        const mode_t mask = ::umask(077);
        UpdateLog(logPath()).append(QStringLiteral("x"));
        ::umask(mask);
        struct stat status = {};
        QCOMPARE(::stat(logPathBytes().constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777, mode_t(0666));
        UpdateLog(logPath()).append(QStringLiteral("y"));
        QCOMPARE(testsupport::readFile(logPath()).count('\n'), 2);
    }

    void aLogThatHasGrownLargeStartsAnew()
    {
        testsupport::PrivateHome::current().writeFile(QStringLiteral("update.log"),
                                                      QByteArray(UpdateLog::largestSize + 1, 'x'));
        UpdateLog(logPath()).append(QStringLiteral("fresh"));
        QVERIFY(testsupport::readFile(logPath()).size() < 100);
    }

    void aTrapIsNotOpened_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *kind : {"link", "dangling link", "second name", "pipe", "directory"})
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }

    void aTrapIsNotOpened()
    {
        QFETCH(QString, kind);
        const auto &home = testsupport::PrivateHome::current();
        const QByteArray victim =
            QFile::encodeName(home.writeFile(QStringLiteral("victim"), "precious"));
        const QByteArray missing = QFile::encodeName(home.path() + QStringLiteral("/missing"));
        const QByteArray place = logPathBytes();
        const char *path = place.constData();
        if (kind == QLatin1String("link"))
            QCOMPARE(::symlink(victim.constData(), path), 0);
        else if (kind == QLatin1String("dangling link"))
            QCOMPARE(::symlink(missing.constData(), path), 0);
        else if (kind == QLatin1String("second name"))
            QCOMPARE(::link(victim.constData(), path), 0);
        else if (kind == QLatin1String("pipe"))
            QCOMPARE(::mkfifo(path, 0666), 0);
        else
            QCOMPARE(::mkdir(path, 0777), 0);
        UpdateLog log(logPath());
        QVERIFY(!log.isOpen());
        QVERIFY(!log.error().isEmpty());
        QVERIFY(!log.append(QStringLiteral("x")));
        ::rmdir(path);
        QCOMPARE(testsupport::readFile(QFile::decodeName(victim)), QByteArray("precious"));
        QVERIFY(!QFile::exists(QFile::decodeName(missing)));
    }

    void eachSwitchHasItsTask()
    {
        QVERIFY(programs::taskOf(QStringLiteral("/from:manual")) == UpdaterTask::ManualCheck);
        QVERIFY(programs::taskOf(QStringLiteral("/from:lumstart")) == UpdaterTask::DailyReport);
        QVERIFY(programs::taskOf(QStringLiteral("/sendinstallinfo:true")) ==
                UpdaterTask::InstallReport);
        QVERIFY(programs::taskOf(QStringLiteral("/senduninstallinfo:true")) ==
                UpdaterTask::UninstallReport);
        QVERIFY(!programs::taskOf(QStringLiteral("/from:elsewhere")));
        QVERIFY(!programs::taskOf(QString()));
    }

    void theVersionsAreCompared()
    {
        const QString one = QStringLiteral("1.0");
        const QString two = QStringLiteral("1.1");
        QVERIFY(check({}, {one, one, {}}).contains(QStringLiteral("nothing newer")));
        QVERIFY(check({}, {one, {}, {}}).contains(QStringLiteral("nothing newer")));
        QVERIFY(check({}, {one, two, {}}).contains(QStringLiteral("offer 1.1")));
        QVERIFY(check({}, {{}, two, {}}).contains(QStringLiteral("not installed as a package")));
        QVERIFY(check({}, {{}, {}, QStringLiteral("no answer")})
                    .contains(QStringLiteral("cannot be compared: no answer")));
    }

    void theConfiguredTimeIsBounded()
    {
        const auto timeFor = [](const char *configured) {
            int time = 0;
            programs::outcomeOf(UpdaterTask::ManualCheck,
                                {{QStringLiteral("timeout"), QString::fromLatin1(configured)}},
                                QDateTime(), [&time](const QString &, int timeoutMs) {
                                    time = timeoutMs;
                                    return InstalledPackage();
                                });
            return time;
        };
        QCOMPARE(timeFor("5"), 5000);
        QCOMPARE(timeFor("0"), 1000);
        QCOMPARE(timeFor("100000"), 60000);
        QCOMPARE(timeFor("soon"), 20000);
    }

    void aDailyReportIsDueADayAfterTheLast()
    {
        const QDateTime now(QDate(2026, 5, 6), QTime(12, 0));
        const QString due = QStringLiteral("a daily report is due");
        QVERIFY(!report(QStringLiteral("2026-05-05 12:00:01"), now).contains(due));
        QVERIFY(report(QStringLiteral("2026-05-05 12:00:00"), now).contains(due));
        QVERIFY(report(QStringLiteral("2018-11-14 15:10:19"), now).contains(due));
        // A clock that was once wrong must not suppress reports for years.
        QVERIFY(report(QStringLiteral("2030-01-01 00:00:00"), now).contains(due));
        QVERIFY(report(QString(), now).contains(QStringLiteral("the last one: never")));
    }

    void thePackageManagersAnswerIsRead()
    {
        const auto known = InstalledPackage::ofPolicy(
            "office-assistant:\n  Installed: 1.0-2~x\n  Candidate: 1.1\n  Version table:\n"
            " *** 1.0-2~x 100\n");
        QCOMPARE(known.installed, QStringLiteral("1.0-2~x"));
        QCOMPARE(known.candidate, QStringLiteral("1.1"));
        const auto absent =
            InstalledPackage::ofPolicy("a:\n  Installed: (none)\n  Candidate: (none)\n");
        QCOMPARE(absent.installed + absent.candidate, QString());
        // apt-cache prints nothing about an unknown package.
        QCOMPARE(InstalledPackage::ofPolicy({}).installed, QString());
    }

    void aPackageManagerThatHangsFailsOrIsMissingIsTold()
    {
        const QString name = QStringLiteral("office-assistant");
        const QString aptCache = QStringLiteral("apt-cache");
        const testsupport::FakePrograms programs;
        programs.hideOthers();
        QVERIFY(InstalledPackage::ask(name, 5000).error.startsWith(QStringLiteral("apt-cache: ")));
        programs.add(aptCache, "exec /bin/sleep 1000");
        QCOMPARE(InstalledPackage::ask(name, 200).error,
                 QStringLiteral("apt-cache gave no answer"));
        programs.add(aptCache, "exit 100");
        QCOMPARE(InstalledPackage::ask(name, 30'000).error, QStringLiteral("apt-cache failed"));
        QVERIFY(!InstalledPackage::ask(QStringLiteral("-o=x"), 30'000).error.isEmpty());
    }
};

HEADLESS_TEST_MAIN(UpdaterTest)
#include "tst_updater.moc"
