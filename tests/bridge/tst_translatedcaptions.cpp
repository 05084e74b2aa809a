#include <QCoreApplication>
#include <QJsonArray>
#include <QTranslator>

#include "bridge/ktoolmanager.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using testsupport::RecordingShell;

namespace {

/// Marks every text of the library's two contexts.
class MarkingTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }

    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        const QByteArray name(context);
        if (name != "KVyrAssistantToolAPI" && name != "InputChecker")
            return {};
        return QLatin1String("tr:") + QLatin1String(sourceText);
    }
};

} // namespace

/// Which texts are translated where the suite has installed its translations.
class TranslatedCaptionsTest : public QObject
{
    Q_OBJECT

private:
    MarkingTranslator m_translator;

    static QJsonObject dialogOf(RecordingShell &shell, const QString &command)
    {
        shell.forget();
        shell.call(command);
        return shell.events(QStringLiteral("dialog")).value(0);
    }

private slots:
    void initTestCase() { QVERIFY(QCoreApplication::installTranslator(&m_translator)); }

    static void captionsAreTranslated_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("name");
        const auto row = [](const char *command, const char *caption, const char *name) {
            QTest::newRow(command) << QString::fromLatin1(command) << QString::fromLatin1(caption)
                                   << QString::fromLatin1(name);
        };
        row("addconfigfile", "tr:Open File", "");
        row("chooseattachment", "tr:Open File", "");
        row("choosesamplefile", "tr:Open File", "");
        row("chooselayouterrorfile", "tr:Open File", "");
        row("openprinterrorfile", "tr:Open File", "");
        row("exportspecialfileperm", "tr:Open File", "");
        row("exportoftenfileperm", "tr:Save File", "tr:filepermissions");
        row("exportsysinfo", "tr:Save File", "tr:systeminfo");
        row("archivepackage", "tr:Save File", "tr:questionfeedback");
    }

    static void captionsAreTranslated()
    {
        QFETCH(QString, command);
        RecordingShell shell;
        const QJsonObject dialog = dialogOf(shell, command);
        QTEST(dialog.value(QLatin1String("caption")).toString(), "caption");
        QTEST(dialog.value(QLatin1String("name")).toString(), "name");
    }

    static void onlyTheLayoutViewsFilterLabelsAreTranslated()
    {
        RecordingShell shell;
        const auto firstFilter = [&shell](const char *command) {
            return dialogOf(shell, QLatin1String(command))
                .value(QLatin1String("filters"))
                .toArray()
                .first()
                .toString();
        };
        QVERIFY(firstFilter("chooselayouterrorfile").startsWith(u"tr:VYR/Word Files("));
        QVERIFY(firstFilter("openprinterrorfile").startsWith(u"VYR/Word Files("));
        QVERIFY(firstFilter("choosesamplefile").startsWith(u"VYR/Word Files("));
    }

    static void theInputCheckersMessagesAreTranslatedButNotItsOkay()
    {
        QCOMPARE(InputChecker::message(ERR_OK), QStringLiteral("ERR_OK"));
        QCOMPARE(InputChecker::message(ERR_NOT_RUNNING), QStringLiteral("tr:ERR_NOT_RUNNING"));
    }
};

HEADLESS_TEST_MAIN(TranslatedCaptionsTest)
#include "tst_translatedcaptions.moc"
