#include <QDir>
#include <QProcess>
#include <QTest>

#include "tests/helio/doctor/doctorpage.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::PrivateHome;

namespace {

constexpr char folder[] =
    ".local/share/flatpak/app/org.libreoffice.LibreOffice/current/active/files/libreoffice";
constexpr char profile[] = ".var/app/org.libreoffice.LibreOffice/config/libreoffice/4/user";

QString inHome(const char *path)
{
    return PrivateHome::current().path() + QLatin1Char('/') + QLatin1String(path);
}

void write(const char *place, const char *name, const QByteArray &content)
{
    PrivateHome::current().writeFile(QLatin1String(place) + QLatin1Char('/') + QLatin1String(name),
                                     content);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

QJsonObject reset(const QStringList &keep)
{
    return {{QStringLiteral("repair"), QStringLiteral("reset")},
            {QStringLiteral("keep"), QJsonArray::fromStringList(keep)}};
}

} // namespace

/// The suite that is looked after, for a page.
class SuiteOperationsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        const QString home = PrivateHome::current().path();
        for (const char *used : {"/.local", "/.config", "/.var"})
            QDir(home + QLatin1String(used)).removeRecursively();
        write(folder, "program/bootstraprc",
              "[Bootstrap]\nProductKey=LibreOffice 24.8\n"
              "UserInstallation=$SYSUSERCONFIG/libreoffice/4\n");
        write(folder, "program/libvclplug_gtk3lo.so", {});
        write(profile, "registrymodifications.xcu",
              "<item oor:path=\"/org.openoffice.Office.Common/VCL\"><prop oor:name=\"UseSkia\" "
              "oor:op=\"fuse\"><value>false</value></prop></item>\n");
        write(profile, "wordbook/standard.dic", "OOoUserDict1\nmine\n");
        write(profile, "odd/thing", "1234");
        m_page.result(QStringLiteral("suite.choose"), {{QStringLiteral("folder"), inHome(folder)}});
    }

    void theSuiteIsDescribedByItsFiles()
    {
        const QJsonObject suite = m_page.result(QStringLiteral("suite.describe"));
        QCOMPARE(suite.value(QStringLiteral("state")).toString(), QStringLiteral("ready"));
        const QJsonObject graphics = suite.value(QStringLiteral("graphics")).toObject();
        QCOMPARE(graphics.value(QStringLiteral("plugin")).toString(), QStringLiteral("gtk3"));
        QCOMPARE(graphics.value(QStringLiteral("skia")), QJsonValue(false));
        QVERIFY(graphics.value(QStringLiteral("openCl")).isNull());
        QCOMPARE(partsOf(suite),
                 (QStringList{QStringLiteral("settings"), QStringLiteral("dictionaries"),
                              QStringLiteral("other")}));
        QCOMPARE(chosenFolder(suite), inHome(folder));
    }

    void aChoiceIsKeptAndAWrongOneRefused()
    {
        QCOMPARE(m_page.error(QStringLiteral("suite.choose"),
                              {{QStringLiteral("folder"), QStringLiteral("/nonexistent")}}),
                 QStringLiteral("There is no suite in /nonexistent"));
        QCOMPARE(chosenFolder(m_page.result(QStringLiteral("suite.describe"))), inHome(folder));
    }

    void aResetKeepsWhatIsToBeKeptAndIsUndone()
    {
        const QJsonObject made = fixed(reset({QStringLiteral("dictionaries")}));
        QCOMPARE(made.value(QStringLiteral("result")).toString(), QStringLiteral("repaired"));
        QCOMPARE(QDir(inHome(profile)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList(QStringLiteral("wordbook")));
        const QJsonObject undone =
            m_page.result(QStringLiteral("doctor.undo"),
                          {{QStringLiteral("journal"), made.value(QStringLiteral("journal"))}});
        QCOMPARE(undone.value(QStringLiteral("result")).toString(), QStringLiteral("undone"));
        QCOMPARE(contentOf(inHome(profile) + QStringLiteral("/odd/thing")), QByteArray("1234"));
        QVERIFY(earlier().isEmpty());
    }

    void theProfileComesBackAfterTheSuiteHasMadeANewOne()
    {
        const QString settings = inHome(profile) + QStringLiteral("/registrymodifications.xcu");
        const QByteArray mine = contentOf(settings);
        fixed(reset({}));
        write(profile, "registrymodifications.xcu", "new");
        const QJsonObject made = fixed({{QStringLiteral("repair"), QStringLiteral("restore")}});
        QCOMPARE(made.value(QStringLiteral("result")).toString(), QStringLiteral("repaired"));
        QCOMPARE(contentOf(settings), mine);
        QCOMPARE(contentOf(earlier() + QStringLiteral("/registrymodifications.xcu")),
                 QByteArray("new"));
    }

    void nothingIsResetWhileTheSuiteRuns()
    {
        const QJsonObject plan = m_page.result(QStringLiteral("suite.plan"), reset({}));
        QProcess suite;
        const QString program = inHome("soffice.bin");
        QFile::remove(program);
        QVERIFY(QFile::copy(QStringLiteral("/bin/sleep"), program));
        suite.start(program, {QStringLiteral("60")});
        QVERIFY(suite.waitForStarted());
        const QString running =
            QStringLiteral("LibreOffice (process %1) is running: close it first")
                .arg(suite.processId());
        const QJsonObject again = m_page.result(QStringLiteral("suite.plan"), reset({}));
        // The plan from before may not be carried out either.
        const QJsonObject made = fix(plan);
        suite.kill();
        QVERIFY(suite.waitForFinished());
        QCOMPARE(again.value(QStringLiteral("refusal")).toString(), running);
        QCOMPARE(again.value(QStringLiteral("changes")).toArray().size(), 0);
        QCOMPARE(made.value(QStringLiteral("reason")).toString(), running);
        QVERIFY(QFile::exists(inHome(profile) + QStringLiteral("/odd/thing")));
    }

    void aProfileThatIsALoopOfLinksIsDescribed()
    {
        QVERIFY(QDir(inHome(profile)).removeRecursively());
        QVERIFY(QFile::link(QStringLiteral("user"), inHome(profile)));
        const QJsonObject suite = m_page.result(QStringLiteral("suite.describe"));
        QCOMPARE(suite.value(QStringLiteral("state")).toString(), QStringLiteral("unused"));
        QCOMPARE(m_page.result(QStringLiteral("suite.plan"), reset({}))
                     .value(QStringLiteral("refusal"))
                     .toString(),
                 QStringLiteral("there is nothing to reset"));
    }

private:
    static QStringList partsOf(const QJsonObject &suite)
    {
        QStringList names;
        const QJsonObject object = suite.value(QStringLiteral("profile")).toObject();
        for (const QJsonValue part : object.value(QStringLiteral("parts")).toArray())
            names.append(part.toObject().value(QStringLiteral("part")).toString());
        return names;
    }

    static QString chosenFolder(const QJsonObject &suite)
    {
        for (const QJsonValue one : suite.value(QStringLiteral("installations")).toArray()) {
            if (one.toObject().value(QStringLiteral("chosen")).toBool())
                return one.toObject().value(QStringLiteral("folder")).toString();
        }
        return {};
    }

    QString earlier()
    {
        return m_page.result(QStringLiteral("suite.describe"))
            .value(QStringLiteral("profile"))
            .toObject()
            .value(QStringLiteral("earlier"))
            .toString();
    }

    QJsonObject fix(const QJsonObject &plan)
    {
        return m_page.result(QStringLiteral("doctor.fix"),
                             {{QStringLiteral("plan"), plan.value(QStringLiteral("plan"))}});
    }

    QJsonObject fixed(const QJsonObject &arguments)
    {
        return fix(m_page.result(QStringLiteral("suite.plan"), arguments));
    }

    DoctorPage m_page;
};

HEADLESS_TEST_MAIN(SuiteOperationsTest)
#include "tst_suiteoperations.moc"
