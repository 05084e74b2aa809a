#include <QDir>

#include "helio/runtime/configuration.h"
#include "helio/runtime/suitehome.h"
#include "host/krt.h"
#include "host/vyrupdate_linux.h"
#include "tests/support/shell/headlesstest.h"

namespace {

QString applicationDirectory()
{
    return QCoreApplication::applicationDirPath();
}

} // namespace

/// Where the shell's settings come from and what they change.
class ConfigurationTest : public QObject
{
    Q_OBJECT

private slots:
    /// Before the first setting is read, because the file is read only once.
    void initTestCase()
    {
        QFile file(applicationDirectory() + QStringLiteral("/helio.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("suiteHome=/from/file\nframeworks=\ncomponents=one, two,\"th,ree\"\n"
                   "someLongName=file\nlocalName=/\xe6\x96\x87\xe6\xa1\xa3/\xc3\xa4\n");
    }

    void cleanupTestCase()
    {
        QVERIFY(QFile::remove(applicationDirectory() + QStringLiteral("/helio.ini")));
    }

    void cleanup()
    {
        for (const char *variable :
             {"HELIO_SUITE_HOME", "HELIO_RESOURCES", "HELIO_FRAMEWORKS", "HELIO_COMPONENTS",
              "HELIO_UPDATE_CFG", "HELIO_SOME_LONG_NAME"})
            qunsetenv(variable);
    }

    void theEnvironmentGoesBeforeTheFileAndTheFileBeforeTheDefault()
    {
        const QString key = QStringLiteral("someLongName");
        QCOMPARE(helio::setting(key, QStringLiteral("default")), QStringLiteral("file"));
        qputenv("HELIO_SOME_LONG_NAME", "environment");
        QCOMPARE(helio::setting(key, QStringLiteral("default")), QStringLiteral("environment"));
        QCOMPARE(helio::setting(QStringLiteral("other"), QStringLiteral("default")),
                 QStringLiteral("default"));
    }

    void theFileMayNameWhatIsNotInLatinLetters()
    {
        QCOMPARE(helio::setting(QStringLiteral("localName"), QString()),
                 QStringLiteral("/\u6587\u6863/\u00e4"));
    }

    void anEmptyVariableOrKeyCountsAsUnset()
    {
        qputenv("HELIO_SOME_LONG_NAME", "");
        QCOMPARE(helio::setting(QStringLiteral("someLongName"), QString()), QStringLiteral("file"));
        QCOMPARE(krt::dirs::frameworks(QString(), nullptr), applicationDirectory());
    }

    void theSuitesHomeIsConfigurable()
    {
        QCOMPARE(krt::dirs::orvaneHome(), QStringLiteral("/from/file"));
        qputenv("HELIO_SUITE_HOME", "/from/environment");
        QCOMPARE(krt::dirs::orvaneHome(), QStringLiteral("/from/environment"));
    }

    void aConfiguredSuitesHomeIsNotMade()
    {
        const QString home =
            testsupport::PrivateHome::current().path() + QStringLiteral("/configured");
        qputenv("HELIO_SUITE_HOME", QFile::encodeName(home));
        helio::makeDefaultSuiteHome();
        QVERIFY(!QFileInfo::exists(home));
    }

    void directoriesDefaultToTheApplications()
    {
        QCOMPARE(krt::dirs::resources(QString(), nullptr), applicationDirectory());
        QCOMPARE(krt::dirs::resources(QStringLiteral("sub"), nullptr),
                 applicationDirectory() + QStringLiteral("/sub"));
        qputenv("HELIO_RESOURCES", "/resources");
        QCOMPARE(krt::dirs::resources(QStringLiteral("sub"), nullptr),
                 QStringLiteral("/resources/sub"));
        qputenv("HELIO_FRAMEWORKS", "/frameworks");
        QCOMPARE(krt::dirs::frameworks(QString(), nullptr), QStringLiteral("/frameworks"));
    }

    void componentsAreAListOfNames()
    {
        QVERIFY(krt::kcmc::support(QStringLiteral("one")));
        QVERIFY(krt::kcmc::support(QStringLiteral("two")));
        QVERIFY(!krt::kcmc::support(QStringLiteral("tw")));
        QVERIFY(!krt::kcmc::support(QStringLiteral("One")));
        qputenv("HELIO_COMPONENTS", "three, four,,");
        QVERIFY(krt::kcmc::support(QStringLiteral("three")));
        QVERIFY(krt::kcmc::support(QStringLiteral("four")));
        QVERIFY(!krt::kcmc::support(QStringLiteral("one")));
        QVERIFY(!krt::kcmc::support(QString()));
    }

    void theUpdatersConfigurationLiesInItsDirectory()
    {
        QCOMPARE(vyrupdate_linux::getUpdateCfgPath(QStringLiteral("/updater/")),
                 QStringLiteral("/updater/vyrupdate.cfg"));
        qputenv("HELIO_UPDATE_CFG", "/elsewhere.cfg");
        QCOMPARE(vyrupdate_linux::getUpdateCfgPath(QStringLiteral("/updater/")),
                 QStringLiteral("/elsewhere.cfg"));
    }
};

HEADLESS_TEST_MAIN(ConfigurationTest)
#include "tst_configuration.moc"
