#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include "helio/runtime/mimepackage.h"
#include "tests/helio/tasks/taskpage.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/privatehome.h"

using testsupport::FakePrograms;
using testsupport::PrivateHome;

namespace {

const QString look = QStringLiteral("task.associations");
const QString repair = QStringLiteral("task.associate");
const QByteArray entry = "[Desktop Entry]\nType=Application\nName=Pen\nExec=true %f\n";

QJsonObject rowOf(const QJsonObject &result, const QString &suffix)
{
    const QJsonArray rows = result.value(QStringLiteral("rows")).toArray();
    for (const QJsonValue row : rows) {
        if (row[QStringLiteral("suffix")] == suffix)
            return row.toObject();
    }
    return {};
}

} // namespace

/// With the desktop's own programs.
class AssociationTasksTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { helio::offerMimePackage(); }

    void init()
    {
        QDir home(PrivateHome::current().path());
        for (const QString &name : {QStringLiteral(".local"), QStringLiteral(".config")})
            QDir(home.filePath(name)).removeRecursively();
        // All but one are not registered yet.
        for (const char *program : {"tbl", "shw"})
            PrivateHome::current().writeFile(
                QStringLiteral("suite/desktops/vyr-office-%1.desktop").arg(QLatin1String(program)),
                entry);
        PrivateHome::current().writeFile(
            QStringLiteral(".local/share/applications/vyr-office-vyr.desktop"), entry);
        qputenv("SUITE_ROOT", QFile::encodeName(home.filePath(QStringLiteral("suite"))));
    }

    void aFreshHomeIsRepairedAndReadBack()
    {
        TaskPage page;
        QVERIFY(QFile::link(QStringLiteral(SUITE_OFFICE_DIR "/asso_template"),
                            page.programs.filePath(QStringLiteral("asso_template"))));
        const QJsonObject before = page.run(look);
        QCOMPARE(word(before, "end"), QStringLiteral("done"));
        QCOMPARE(before.value(QStringLiteral("rows")).toArray().size(), 39);
        QVERIFY(!rowOf(before, QStringLiteral("vyr")).value(QStringLiteral("isKnown")).toBool());

        const QJsonObject after = page.run(repair);
        QCOMPARE(word(after, "reason"), QString());
        for (const QJsonValue row : after.value(QStringLiteral("rows")).toArray())
            QVERIFY2(row[QStringLiteral("isKnown")].toBool() &&
                         row[QStringLiteral("isSuite")].toBool(),
                     qPrintable(row[QStringLiteral("suffix")].toString()));
        const QString program = word(rowOf(after, QStringLiteral("xlsx")), "entry");
        QCOMPARE(program, QStringLiteral("vyr-office-tbl.desktop"));
        const QJsonObject programs = after.value(QStringLiteral("programs")).toObject();
        QCOMPARE(word(programs.value(program).toObject(), "title"), QStringLiteral("Pen"));
    }

    void aToolThatHangsCanBeCancelled()
    {
        TaskPage page;
        QVERIFY(QFile::link(QStringLiteral(SUITE_OFFICE_DIR "/asso_template"),
                            page.programs.filePath(QStringLiteral("asso_template"))));
        page.program(QStringLiteral("assistantctl"), ":");
        const FakePrograms programs;
        const QString begun = page.programs.filePath(QStringLiteral("begun"));
        programs.add(QStringLiteral("gio"),
                     "echo > '" + QFile::encodeName(begun) + "'; exec sleep 600");
        const int call = page.start(look);
        QVERIFY(QTest::qWaitFor([&begun] { return QFileInfo::exists(begun); },
                                testsupport::longestWaitMs));
        page.start(QStringLiteral("task.cancel"), {{QStringLiteral("task"), look}});
        QCOMPARE(word(page.result(call), "end"), QStringLiteral("cancelled"));
    }

    void withoutTheToolNoTypeIsKnown()
    {
        TaskPage page;
        const FakePrograms programs;
        programs.hideOthers();
        const QJsonObject result = page.run(look);
        QCOMPARE(word(result, "end"), QStringLiteral("done"));
        QCOMPARE(word(rowOf(result, QStringLiteral("docx")), "type"), QString());
    }
};

int main(int argc, char *argv[])
{
    const PrivateHome home;
    QCoreApplication application(argc, argv);
    AssociationTasksTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_associationtasks.moc"
