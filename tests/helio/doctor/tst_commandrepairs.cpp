#include <QDir>
#include <QFile>

#include "tests/helio/doctor/doctorpage.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::PrivateHome;

namespace {

constexpr char dumpCheck[] = R"json({"checks": [
    {"id": "crash.dumps-off", "title": "Dumps are kept",
     "look": {"ini": "$XDG_CONFIG_HOME/Orvane/Office.conf", "section": "6.0", "key": "SaveDump",
              "value": "false"},
     "finding": {"text": "Dumps are not kept."}}
]})json";
constexpr char dumpsOff[] = "[6.0]\nSaveDump=false\n";

} // namespace

/// The library's own repairs, with the doctor around them.
class CommandRepairsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QDir(PrivateHome::current().path() + QStringLiteral("/.local")).removeRecursively();
        PrivateHome::current().writeFile(
            QStringLiteral(".config/office-assistant/checks.d/own.json"), dumpCheck);
    }

    void aCommandsRepairIsPreviewedWatchedCheckedAndUndone()
    {
        const QString settings = PrivateHome::current().writeFile(
            QStringLiteral(".config/Orvane/Office.conf"), dumpsOff);
        const QJsonObject command{{QStringLiteral("command"), QStringLiteral("startDump")}};
        DoctorPage page;
        const QJsonObject preview = page.result(QStringLiteral("doctor.preview"), command);
        QCOMPARE(preview.value(QStringLiteral("paths")), QJsonValue(QJsonArray{settings}));
        QCOMPARE(preview.value(QStringLiteral("lasting")), QJsonValue(QString()));

        const QJsonObject begun = page.result(QStringLiteral("doctor.watch"), command);
        QCOMPARE(begun.value(QStringLiteral("refusal")), QJsonValue(QString()));
        PrivateHome::current().writeFile(QStringLiteral(".config/Orvane/Office.conf"),
                                         "[6.0]\nSaveDump=true\n");
        const QJsonObject ended = page.result(QStringLiteral("doctor.watched"));
        QCOMPARE(ended.value(QStringLiteral("result")), QJsonValue(QStringLiteral("repaired")));
        QCOMPARE(ended.value(QStringLiteral("journal")), begun.value(QStringLiteral("journal")));
        QCOMPARE(page.linesOf("check").size(), 1);
        const QJsonObject change =
            ended.value(QStringLiteral("changes")).toArray().first().toObject();
        QVERIFY(change.value(QStringLiteral("diff"))
                    .toString()
                    .contains(QStringLiteral("-SaveDump=false\n+SaveDump=true\n")));

        const QJsonObject undone = page.result(QStringLiteral("doctor.undo"), ended);
        QCOMPARE(undone.value(QStringLiteral("result")), QJsonValue(QStringLiteral("undone")));
        QCOMPARE(testsupport::readFile(settings), QByteArray(dumpsOff));
    }

    void aCommandThatDidNotHelpSaysWhatIsStillThere()
    {
        PrivateHome::current().writeFile(QStringLiteral(".config/Orvane/Office.conf"), dumpsOff);
        DoctorPage page;
        page.result(QStringLiteral("doctor.watch"),
                    {{QStringLiteral("command"), QStringLiteral("startDump")}});
        const QJsonObject ended = page.result(QStringLiteral("doctor.watched"));
        QCOMPARE(ended.value(QStringLiteral("result")), QJsonValue(QStringLiteral("failed")));
        QVERIFY(ended.value(QStringLiteral("reason"))
                    .toString()
                    .contains(QStringLiteral("Dumps are not kept.")));
        QCOMPARE(ended.value(QStringLiteral("journal")), QJsonValue(0));
        QVERIFY(ended.value(QStringLiteral("changes")).toArray().isEmpty());
    }

    void whileACommandIsWatchedOtherRepairsWait()
    {
        DoctorPage page;
        const QJsonObject command{{QStringLiteral("command"), QStringLiteral("stopDump")}};
        const QJsonValue none{QString()};
        QCOMPARE(
            page.result(QStringLiteral("doctor.watch"), command).value(QStringLiteral("refusal")),
            none);
        QVERIFY(
            page.result(QStringLiteral("doctor.watch"), command).value(QStringLiteral("refusal")) !=
            none);
        const QJsonObject undone =
            page.result(QStringLiteral("doctor.undo"), {{QStringLiteral("journal"), 1}});
        QCOMPARE(undone.value(QStringLiteral("result")), QJsonValue(QStringLiteral("failed")));
        const QJsonObject ended = page.result(QStringLiteral("doctor.watched"));
        QCOMPARE(ended.value(QStringLiteral("result")), QJsonValue(QStringLiteral("unchanged")));
        QVERIFY(!page.error(QStringLiteral("doctor.watched"), {}).isEmpty());
    }

    void restoringShortcutsIsPreviewedFileByFile()
    {
        // The script goes by the user's name.
        const QByteArray user = qgetenv("USER");
        const QString home = PrivateHome::current().path();
        qputenv("USER", QFile::encodeName(QStringLiteral("..") + home));
        qputenv("SUITE_ROOT", QFile::encodeName(home + QStringLiteral("/suite")));
        for (const char *name : {"vyr", "tbl", "shw"})
            PrivateHome::current().writeFile(
                QStringLiteral("suite/desktops/vyr-office-%1.desktop").arg(QLatin1String(name)),
                "new\n");
        PrivateHome::current().writeFile(QStringLiteral("Desktop/vyr-office-vyr.desktop"), "old\n");
        PrivateHome::current().writeFile(QStringLiteral("Desktop/vyr-office-tbl.desktop"), "new\n");
        PrivateHome::current().writeFile(QStringLiteral("Desktop/vyr-office-tessaly.desktop"), "");
        DoctorPage page;
        const QJsonObject preview =
            page.result(QStringLiteral("doctor.preview"),
                        {{QStringLiteral("command"), QStringLiteral("fixfouricon")}});
        qunsetenv("SUITE_ROOT");
        qputenv("USER", user);
        QCOMPARE(preview.value(QStringLiteral("paths")).toArray().size(), 9);
        QStringList changes;
        for (const QJsonValue change : preview.value(QStringLiteral("changes")).toArray())
            changes.append(change[QStringLiteral("kind")].toString() +
                           change[QStringLiteral("path")].toString().mid(home.size()));
        QCOMPARE(changes,
                 (QStringList{QStringLiteral("write/Desktop/vyr-office-vyr.desktop"),
                              QStringLiteral("create/Desktop/vyr-office-shw.desktop"),
                              QStringLiteral("remove/Desktop/vyr-office-tessaly.desktop")}));
    }

    void dumpsThatAreTooLargeAreNamedAsLastingBefore()
    {
        const QString dump = PrivateHome::current().writeFile(
            QStringLiteral(".local/share/Orvane/tmp/dump/vyr_1.dmp"), "dump");
        DoctorPage page;
        const QJsonObject command{{QStringLiteral("command"), QStringLiteral("cleardumpdir")}};
        const auto preview = [&] { return page.result(QStringLiteral("doctor.preview"), command); };
        QCOMPARE(preview().value(QStringLiteral("lasting")), QJsonValue(QString()));
        QCOMPARE(preview().value(QStringLiteral("changes")).toArray().size(), 1);
        QVERIFY(QFile(dump).resize(65 << 20));
        QVERIFY(!preview().value(QStringLiteral("lasting")).toString().isEmpty());
        QVERIFY(!page.result(QStringLiteral("doctor.watch"), command)
                     .value(QStringLiteral("refusal"))
                     .toString()
                     .isEmpty());
    }
};

HEADLESS_TEST_MAIN(CommandRepairsTest)
#include "tst_commandrepairs.moc"
