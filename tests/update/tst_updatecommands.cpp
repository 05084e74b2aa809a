#include <QFile>
#include <QSettings>

#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

/// The updater commands as a page calls them, except those that launch the updater, which would be
/// the machine's own.
class UpdateCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_config = testsupport::PrivateHome::current().path() + QStringLiteral("/update.cfg");
        qputenv("HELIO_UPDATE_CFG", QFile::encodeName(m_config));
    }

    void cleanup()
    {
        QFile::remove(m_config);
        qunsetenv("HELIO_UPDATE_CFG");
    }

    void aKeyAndValueAreSplitAtTheirOneDollarSign_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        const QString success = QStringLiteral("success");
        const QString error = QStringLiteral("error");
        QTest::newRow("both") << QStringLiteral("a$b") << success << QStringLiteral("a")
                              << QStringLiteral("b");
        QTest::newRow("empty value")
            << QStringLiteral("a$") << success << QStringLiteral("a") << QStringLiteral("");
        QTest::newRow("no sign") << QStringLiteral("ab") << error << QString() << QString();
        QTest::newRow("two signs") << QStringLiteral("a$b$c") << error << QString() << QString();
        QTest::newRow("empty") << QString() << error << QString() << QString();
        QTest::newRow("free text")
            << QStringLiteral("a b$\u65e5, \"x\" = [y];\n") << success << QStringLiteral("a b")
            << QStringLiteral("\u65e5, \"x\" = [y];\n");
    }

    void aKeyAndValueAreSplitAtTheirOneDollarSign()
    {
        QFETCH(QString, argument);
        QFETCH(QString, key);
        QFETCH(QString, value);
        const QByteArray before = "[update]\nkept=1\n";
        testsupport::PrivateHome::current().writeFile(QStringLiteral("update.cfg"), before);
        QTEST(call("changeupdateconfig", {{QStringLiteral("keyvalue"), argument}})
                  .value(QLatin1String("result"))
                  .toString(),
              "result");
        if (key.isEmpty()) {
            QCOMPARE(testsupport::readFile(m_config), before);
            return;
        }
        QSettings settings(m_config, QSettings::IniFormat);
        settings.beginGroup(QStringLiteral("update"));
        QCOMPARE(settings.childKeys().size(), 2);
        QVERIFY(settings.contains(key));
        QCOMPARE(settings.value(key).toString(), value);
    }

    void changingAMissingConfigurationIsASuccessAndWritesNothing()
    {
        QCOMPARE(call("changeupdateconfig", {{QStringLiteral("keyvalue"), QStringLiteral("a$b")}}),
                 answer(QStringLiteral("success")));
        QVERIFY(!QFile::exists(m_config));
    }

    void withoutAConfigurationTheDailyReportLaunchesNothingAndIsASuccess()
    {
        QCOMPARE(call("getupdateconfig"), answer(QStringLiteral("error")));
        QCOMPARE(call("getupdatesupport"), answer(false));
        QCOMPARE(call("testdailyreport"), answer(QStringLiteral("success")));
        QVERIFY(m_shell.events(QStringLiteral("started")).isEmpty());
    }

    void theConfigurationIsAnsweredAsAnObjectOfTexts()
    {
        testsupport::PrivateHome::current().writeFile(QStringLiteral("update.cfg"),
                                                      "[update]\nn=5\n");
        QCOMPARE(call("getupdateconfig"),
                 answer(QJsonObject{{QStringLiteral("n"), QStringLiteral("5")}}));
        testsupport::PrivateHome::current().writeFile(QStringLiteral("update.cfg"), "");
        QCOMPARE(call("getupdateconfig"), answer(QJsonObject()));
    }

private:
    QJsonObject call(const char *command, const QJsonObject &args = {})
    {
        m_shell.forget();
        return m_shell.call(QString::fromLatin1(command), args);
    }

    static QJsonObject answer(const QJsonValue &result)
    {
        return {{QStringLiteral("result"), result}};
    }

    QString m_config;
    testsupport::RecordingShell m_shell;
};

HEADLESS_TEST_MAIN(UpdateCommandsTest)
#include "tst_updatecommands.moc"
