#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <memory>

#include "helio/runtime/hostevents.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/unprivileged.h"
#include "update/kupdatehelp.h"
#include "update/logtext.h"

using OfficeAssiant::KUpdateHelp;

/// The updater's configuration, log and launches, in private directories.
class UpdateHelpTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_directory->path()).mkdir(QStringLiteral("vtool")));
        QVERIFY(QDir(m_directory->path()).mkdir(QStringLiteral("log")));
        m_help = std::make_unique<KUpdateHelp>(place("vtool/"), place("log"));
        m_started.clear();
        connect(&helio::HostEvents::instance(), &helio::HostEvents::programStarting, this,
                &UpdateHelpTest::noteStart, Qt::UniqueConnection);
    }

    void anUpdateNeedsBothUpdaterAndConfiguration()
    {
        QVERIFY(!m_help->isUpdateSupported());
        writeConfig("");
        QVERIFY(!m_help->isUpdateSupported());
        writeFile("vtool/vyrupdate", "");
        QVERIFY(m_help->isUpdateSupported());
        QVERIFY(QFile::remove(place("vtool/vyrupdate.cfg")));
        QVERIFY(!m_help->isUpdateSupported());
    }

    void aMissingConfigurationIsNothing()
    {
        QVERIFY(!m_help->readConfig());
        m_help->setConfigValue(QStringLiteral("a"), QStringLiteral("b"));
        m_help->startDailyReport();
        QVERIFY(m_started.isEmpty());
        QVERIFY(!QFile::exists(place("vtool/vyrupdate.cfg")));
    }

    void onlyTheDirectKeysOfTheUpdateGroupAreRead()
    {
        writeConfig("top=1\n[update]\nb=two words\na=1\nflag=true\nempty=\nsub\\deep=x\n"
                    "[other]\nc=3\n");
        const QJsonObject expected{{QStringLiteral("a"), QStringLiteral("1")},
                                   {QStringLiteral("b"), QStringLiteral("two words")},
                                   {QStringLiteral("flag"), QStringLiteral("true")},
                                   {QStringLiteral("empty"), QString()}};
        QCOMPARE(m_help->readConfig().value(), expected);
    }

    void aListHasNoText()
    {
        writeConfig("[update]\nlist=a, b\nquoted=\"a, b\"\n");
        const QJsonObject expected{{QStringLiteral("list"), QString()},
                                   {QStringLiteral("quoted"), QStringLiteral("a, b")}};
        QCOMPARE(m_help->readConfig().value(), expected);
    }

    void aConfigurationWithoutTheGroupIsEmpty_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("other group") << QByteArray("[other]\na=1\n");
        QTest::newRow("no lines") << QByteArray(5000, '[');
        QTest::newRow("zero bytes") << QByteArray(5000, '\0');
        QTest::newRow("random") << QByteArray::fromHex("00ff1b5b5d3d0a255c780a3d5b0a5c0a2225");
    }

    void aConfigurationWithoutTheGroupIsEmpty()
    {
        QFETCH(QByteArray, content);
        writeConfig(content);
        QCOMPARE(m_help->readConfig().value(), QJsonObject());
    }

    void aDirectoryForAConfigurationIsEmptyAndStays()
    {
        QVERIFY(QDir(place("vtool")).mkdir(QStringLiteral("vyrupdate.cfg")));
        QCOMPARE(m_help->readConfig().value(), QJsonObject());
        m_help->setConfigValue(QStringLiteral("a"), QStringLiteral("b"));
        m_help->startDailyReport();
        QCOMPARE(m_started.size(), 1);
        QVERIFY(QFileInfo(place("vtool/vyrupdate.cfg")).isDir());
    }

    void aValueIsStoredInTheUpdateGroupAndTheRestStays()
    {
        writeConfig("[other]\nc=3\n\n[update]\nkeep=1\na=old\n");
        m_help->setConfigValue(QStringLiteral("a"), QStringLiteral("b"));
        m_help->setConfigValue(QStringLiteral("none"), QString());
        const QSettings settings(place("vtool/vyrupdate.cfg"), QSettings::IniFormat);
        QCOMPARE(settings.value(QStringLiteral("update/a")).toString(), QStringLiteral("b"));
        QVERIFY(settings.contains(QStringLiteral("update/none")));
        QCOMPARE(settings.value(QStringLiteral("update/none")).toString(), QString());
        QCOMPARE(settings.value(QStringLiteral("update/keep")).toString(), QStringLiteral("1"));
        QCOMPARE(settings.value(QStringLiteral("other/c")).toString(), QStringLiteral("3"));
    }

    void everyByteIsACharacterAndOthersAreEscaped()
    {
        writeConfig("[update]\na=old\nname=a\xe9z\nother=\\x4e2d\\x31\n");
        const QJsonObject values = m_help->readConfig().value();
        QCOMPARE(values.value(QLatin1String("name")).toString(), QStringLiteral("aéz"));
        QCOMPARE(values.value(QLatin1String("other")).toString(), QStringLiteral("中1"));
        // Digits behind an escape would belong to it.
        m_help->setConfigValue(QStringLiteral("a"), QStringLiteral("\"é;ag\x7f😀,"));
        QCOMPARE(testsupport::readFile(place("vtool/vyrupdate.cfg")),
                 "[update]\na=\"\\\"\\xe9;ag\\x7f\\xd83d\\xde00,\"\nname=a\\xe9z\n"
                 "other=\\x4e2d\\x31\n");
        m_help->setConfigValue(QStringLiteral("a"), QStringLiteral("éaBg"));
        QVERIFY(
            testsupport::readFile(place("vtool/vyrupdate.cfg")).contains("a=\\xe9\\x61\\x42g\n"));
    }

    void aConfigurationInADirectoryThatCannotBeWrittenIsStillSet()
    {
        writeConfig("[update]\na=old\n");
        const QString file = place("vtool/other");
        const bool couldNotMakeAnother = withReadOnlyDirectory([this, &file] {
            m_help->setConfigValue(QStringLiteral("a"), QStringLiteral("new"));
            return !QFile(file).open(QIODevice::WriteOnly);
        });
        QVERIFY(couldNotMakeAnother);
        QCOMPARE(m_help->readConfig()->value(QLatin1String("a")).toString(), QStringLiteral("new"));
    }

    void nothingIsLeftBesideAChangedConfiguration()
    {
        writeConfig("[update]\na=old\n");
        writeFile(qPrintable(QStringLiteral("vtool") + workName() + QStringLiteral("/new")),
                  "half of a killed run");
        m_help->setConfigValue(QStringLiteral("a"), QStringLiteral("new"));
        QCOMPARE(testsupport::readFile(place("vtool/vyrupdate.cfg")), "[update]\na=new\n");
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        QCOMPARE(QDir(place("vtool")).entryList(all), QStringList{QStringLiteral("vyrupdate.cfg")});
    }

    void aLinkInTheWorkplacesPlaceIsNotFollowed()
    {
        writeConfig("[update]\na=old\n");
        writeFile("others/new", "kept");
        QVERIFY(QFile::link(place("others"), place("vtool") + workName()));
        m_help->setConfigValue(QStringLiteral("a"), QStringLiteral("new"));
        QCOMPARE(testsupport::readFile(place("others/new")), "kept");
        QCOMPARE(testsupport::readFile(place("vtool/vyrupdate.cfg")), "[update]\na=old\n");
    }

    void writingOverAConfigurationGivesTheSameContentAsRenaming_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("shorter") << QStringLiteral("x");
        QTest::newRow("longer") << QString(20000, QLatin1Char('x'));
        QTest::newRow("as long") << QString(5000, QLatin1Char('x'));
    }

    void writingOverAConfigurationGivesTheSameContentAsRenaming()
    {
        QFETCH(QString, value);
        const QByteArray earlier =
            "[other]\nc=3\n\n[update]\na=" + QByteArray(5000, 'o') + "\nz=1\n";
        const auto set = [this, &value] {
            m_help->setConfigValue(QStringLiteral("a"), value);
            return true;
        };
        writeConfig(earlier);
        set();
        const QByteArray expected = testsupport::readFile(place("vtool/vyrupdate.cfg"));
        writeConfig(earlier);
        QVERIFY(withReadOnlyDirectory(set));
        QCOMPARE(testsupport::readFile(place("vtool/vyrupdate.cfg")), expected);
        QVERIFY(!QFile::exists(workplace()));
    }

    void aPartlyWrittenConfigurationIsRestored_data()
    {
        QTest::addColumn<QByteArray>("earlier");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("longer") << QByteArray("[update]\na=1\nb=2\n")
                                << QByteArray("[update]\na=12345678\nb=2\n");
        QTest::newRow("shorter") << QByteArray("[update]\na=12345678\nb=2\n")
                                 << QByteArray("[update]\na=1\nb=2\n");
    }

    void aPartlyWrittenConfigurationIsRestored()
    {
        QFETCH(QByteArray, earlier);
        QFETCH(QByteArray, content);
        const QByteArray padded = content.leftJustified(earlier.size(), '\n');
        for (int written = 0; written <= padded.size(); ++written) {
            writeConfig(padded.left(written) + earlier.mid(written));
            leaveWorkplace(earlier, content);
            QVERIFY(withReadOnlyDirectory([this] { return m_help->readConfig().has_value(); }));
            const QByteArray end = testsupport::readFile(place("vtool/vyrupdate.cfg"));
            QVERIFY(end == earlier || (written == padded.size() && end == content));
            QVERIFY(!QFile::exists(workplace()));
        }
    }

    void aConfigurationThatTheUpdaterHasWrittenSinceStays()
    {
        const QByteArray since = "[update]\na=3\nb=2\n";
        writeConfig(since);
        leaveWorkplace("[update]\na=1\nb=2\n", "[update]\na=2\nb=2\n");
        QVERIFY(withReadOnlyDirectory([this] { return m_help->readConfig().has_value(); }));
        QCOMPARE(testsupport::readFile(place("vtool/vyrupdate.cfg")), since);
        QVERIFY(!QFile::exists(workplace()));
    }

    void aLockFileThatAKillLeftEmptyDoesNotKeepTheNextChange()
    {
        writeConfig("[update]\na=old\n");
        writeFile("vtool/vyrupdate.cfg.lock", "");
        m_help->setConfigValue(QStringLiteral("a"), QStringLiteral("new"));
        QCOMPARE(m_help->readConfig()->value(QLatin1String("a")).toString(), QStringLiteral("new"));
        QVERIFY(!QFile::exists(place("vtool/vyrupdate.cfg.lock")));
    }

    void anEmptyKeyIsNotStored()
    {
        writeConfig("[update]\na=old\n");
        QTest::ignoreMessage(QtWarningMsg, "QSettings::setValue: Empty key passed");
        m_help->setConfigValue(QString(), QStringLiteral("new"));
        QCOMPARE(testsupport::readFile(place("vtool/vyrupdate.cfg")), "[update]\na=old\n");
    }

    void theDailyReportSetsItsDateOnlyAfterTheLaunch()
    {
        writeConfig("[update]\nusagecollected=2024-01-01 00:00:00\n");
        m_help->startDailyReport();
        const QStringList launch{place("vtool/vyrupdate"), QStringLiteral("/from:lumstart")};
        QCOMPARE(m_started, QList<QStringList>{launch});
        QVERIFY(m_configAtStart.contains("usagecollected=2024-01-01 00:00:00"));
        QCOMPARE(m_help->readConfig()->value(QLatin1String("usagecollected")).toString(),
                 QStringLiteral("2018-11-14 15:10:19"));
    }

    void eachLaunchHasItsOneOption()
    {
        m_help->startManualCheck();
        m_help->startUninstallReport();
        m_help->startInstallReport();
        const QString updater = place("vtool/vyrupdate");
        const QList<QStringList> expected{
            {updater, QStringLiteral("/from:manual")},
            {updater, QStringLiteral("/senduninstallinfo:true")},
            {updater, QStringLiteral("/sendinstallinfo:true")},
        };
        QCOMPARE(m_started, expected);
    }

    void theLogIsTextUpToItsFirstZeroByte_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("UTF-8") << QByteArray("\xe6\x97\xa5\n") << QStringLiteral("\u65e5\n");
        QTest::newRow("not UTF-8") << QByteArray("a\xff") << QStringLiteral("a\ufffd");
        QTest::newRow("other line ends") << QByteArray("a\r\nb\r\n") << QStringLiteral("a\nb\n");
        QTest::newRow("zero byte") << QByteArray("ab\0cd", 5) << QStringLiteral("ab");
        QTest::newRow("zero byte first") << QByteArray(1, '\0') << QString();
        const QByteArray large = QByteArray("0123456789\xc3\xa4\n").repeated(100000);
        QTest::newRow("large") << large << QString::fromUtf8(large);
        QTest::newRow("zero byte far in")
            << large + QByteArray(1, '\0') + large << QString::fromUtf8(large);
        QTest::newRow("long run of carriage returns")
            << QByteArray("a") + QByteArray(300000, '\r') + "b" << QStringLiteral("ab");
    }

    void theLogIsTextUpToItsFirstZeroByte()
    {
        QFETCH(QByteArray, content);
        writeFile("log/vyrupdate.log", content);
        const auto text = m_help->readLog();
        QVERIFY(text);
        QTEST(*text, "text");
    }

    void aLogOfManyGigabytesOfNothingIsEmpty()
    {
        writeFile("log/vyrupdate.log", "");
        QVERIFY(QFile::resize(place("log/vyrupdate.log"), qint64(1) << 40));
        QCOMPARE(m_help->readLog().value(), QString());
    }

    void ofALongLogTheFirst16MiBAreRead()
    {
        constexpr int most = 16 * 1024 * 1024;
        writeFile("log/vyrupdate.log", QByteArray(most, 'x'));
        QCOMPARE(m_help->readLog().value().size(), most);
        writeFile("log/vyrupdate.log", QByteArray(most, 'x') + QByteArray(most, 'y'));
        QCOMPARE(m_help->readLog().value(), QString(most, QLatin1Char('x')));
    }

    void aLogIsCutBetweenTwoCharacters()
    {
        writeFile("log/vyrupdate.log", "a\xe5\xad\x97\xe5\xad\x97");
        const auto cut = [this](qint64 largest) {
            return OfficeAssiant::readLogText(place("log/vyrupdate.log"), largest).value();
        };
        QCOMPARE(cut(7), QStringLiteral("a\u5b57\u5b57"));
        QCOMPARE(cut(6), QStringLiteral("a\u5b57"));
        QCOMPARE(cut(4), QStringLiteral("a\u5b57"));
        QCOMPARE(cut(3), QStringLiteral("a"));
    }

    void aLogThatCannotBeOpenedIsNothing_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *kind : {"missing", "directory", "pipe", "dangling link"})
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }

    void aLogThatCannotBeOpenedIsNothing()
    {
        QFETCH(QString, kind);
        const QString log = place("log/vyrupdate.log");
        if (kind == QLatin1String("directory"))
            QVERIFY(QDir().mkdir(log));
        else if (kind == QLatin1String("pipe"))
            QCOMPARE(::mkfifo(QFile::encodeName(log).constData(), 0600), 0);
        else if (kind == QLatin1String("dangling link"))
            QVERIFY(QFile::link(place("nowhere"), log));
        QVERIFY(!m_help->readLog());
    }

    void aLogThatNobodyKeepsIsEmpty()
    {
        QVERIFY(QFile::link(QStringLiteral("/dev/null"), place("log/vyrupdate.log")));
        QCOMPARE(m_help->readLog().value(), QString());
    }

    void clearingRemovesFilesOfAnyNameAndNoDirectory()
    {
        for (const char *name :
             {"log/vyrupdate.log", "log/other program.txt", "log/-rf", "log/a\nb"})
            writeFile(name, "x");
        writeFile("log/.hidden", "x");
        writeFile("log/sub/inside.log", "x");
        writeFile("kept.log", "x");
        QVERIFY(QFile::link(place("kept.log"), place("log/link.log")));
        m_help->clearLogDirectory();
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        const QStringList left{QStringLiteral(".hidden"), QStringLiteral("sub")};
        QCOMPARE(QDir(place("log")).entryList(all, QDir::Name), left);
        QVERIFY(QFile::exists(place("log/sub/inside.log")));
        QVERIFY(QFile::exists(place("kept.log")));
    }

    void clearingAMissingDirectoryTouchesNothing()
    {
        writeFile("kept.log", "x");
        const QString previous = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_directory->path()));
        KUpdateHelp(place("vtool/"), place("nowhere")).clearLogDirectory();
        QVERIFY(QDir::setCurrent(previous));
        QVERIFY(QFile::exists(place("kept.log")));
    }

private:
    QString place(const char *name) const
    {
        return m_directory->filePath(QString::fromLatin1(name));
    }

    void writeFile(const char *name, const QByteArray &content) const
    {
        QDir().mkpath(QFileInfo(place(name)).path());
        QFile file(place(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    void writeConfig(const QByteArray &content) const { writeFile("vtool/vyrupdate.cfg", content); }

    bool withReadOnlyDirectory(const std::function<bool()> &check) const
    {
        const auto mode = QFile::permissions(place("vtool"));
        const bool holds =
            QFile::setPermissions(place("vtool"), QFile::ReadOwner | QFile::ExeOwner) &&
            testsupport::holdsUnprivileged(check);
        return QFile::setPermissions(place("vtool"), mode) && holds;
    }

    static QString workName()
    {
        return QStringLiteral("/.office-assistant-update-%1").arg(::geteuid());
    }

    static QString workplace()
    {
        return testsupport::PrivateHome::current().suiteHome() + QStringLiteral("/tmp") +
               workName();
    }

    /// What a run leaves that was killed while it wrote over the configuration.
    static void leaveWorkplace(const QByteArray &earlier, const QByteArray &content)
    {
        const QString below =
            QDir(testsupport::PrivateHome::current().path()).relativeFilePath(workplace());
        testsupport::PrivateHome::current().writeFile(below + QStringLiteral("/earlier"), earlier);
        testsupport::PrivateHome::current().writeFile(below + QStringLiteral("/new"), content);
    }

    void noteStart(const QString &program, const QStringList &arguments,
                   const QString &workingDirectory, bool detached)
    {
        QVERIFY(detached);
        QVERIFY(workingDirectory.isEmpty());
        m_started.append(QStringList{program} + arguments);
        QFile config(place("vtool/vyrupdate.cfg"));
        m_configAtStart = config.open(QIODevice::ReadOnly) ? config.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<KUpdateHelp> m_help;
    QList<QStringList> m_started;
    QByteArray m_configAtStart;
};

HEADLESS_TEST_MAIN(UpdateHelpTest)
#include "tst_kupdatehelp.moc"
