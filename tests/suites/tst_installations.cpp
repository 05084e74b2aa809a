#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

#include "suites/installation.h"

using namespace suites;

namespace {

constexpr char usualProfile[] = "$SYSUSERCONFIG/libreoffice/4";
constexpr char flatpak[] =
    "/var/lib/flatpak/app/org.libreoffice.LibreOffice/current/active/files/libreoffice";

/// A machine of files alone.
class Scene
{
public:
    Scene()
    {
        m_machine.root = m_directory.path();
        m_machine.user = geteuid();
        m_machine.environment = {{QStringLiteral("HOME"), QStringLiteral("/home/mira")}};
    }

    void write(const QString &path, const QByteArray &content = {})
    {
        const QString located = m_machine.located(path);
        QDir().mkpath(QFileInfo(located).path());
        QFile file(located);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(located));
    }

    void install(const char *folder, const char *version, const QByteArray &profile = usualProfile)
    {
        write(QLatin1String(folder) + QStringLiteral("/program/bootstraprc"),
              QByteArray("[Bootstrap]\nProductKey=LibreOffice ") + version +
                  "\nUserInstallation=" + profile + "\n");
    }

    QVector<Installation> found() const
    {
        const doctor::Deadline deadline(std::chrono::seconds(10));
        return installations(*descriptionNamed(QStringLiteral("libreoffice")), m_machine, deadline);
    }

    QStringList folders() const
    {
        QStringList folders;
        for (const Installation &installation : found())
            folders.append(installation.folder);
        return folders;
    }

    QString chosenFolder() const { return chosen(found(), m_machine)->folder; }
    doctor::Machine &machine() { return m_machine; }

private:
    QTemporaryDir m_directory;
    doctor::Machine m_machine;
};

} // namespace

class TestInstallations : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsFoundWhereNothingIs();
    void everyPlaceIsLookedAt();
    void theNewestOfAFolderComesFirst();
    void componentsPluginsAndLanguagesAreThoseOfTheFiles();
    void theProfileIsThatOfTheBootstrapFile_data();
    void theProfileIsThatOfTheBootstrapFile();
    void aFolderWithoutAVersionIsNoInstallation();
    void theChoiceIsKept();
    void aChoiceThatIsGoneIsForgotten();
    void everyPackageHasANameForDebian();
};

void TestInstallations::nothingIsFoundWhereNothingIs()
{
    const Scene scene;
    QVERIFY(scene.found().isEmpty());
    QVERIFY(!chosen({}, doctor::Machine()));
}

void TestInstallations::everyPlaceIsLookedAt()
{
    Scene scene;
    scene.install("/usr/lib/libreoffice", "7.4");
    scene.install("/opt/libreoffice24.2", "24.2");
    scene.install(flatpak, "24.8");
    scene.install("/home/mira/.local/share/flatpak/app/org.libreoffice.LibreOffice/current/active/"
                  "files/libreoffice",
                  "24.8");
    scene.install("/snap/libreoffice/current/lib/libreoffice", "25.2");
    QStringList sources;
    QStringList profiles;
    QStringList entries;
    for (const Installation &installation : scene.found()) {
        sources.append(installation.source);
        profiles.append(installation.profile);
        entries.append(installation.entries);
    }
    QCOMPARE(sources.join(QLatin1Char(' ')), QStringLiteral("package folder flatpak flatpak snap"));
    QCOMPARE(entries.join(QLatin1Char(' ')),
             QStringLiteral("libreoffice- libreoffice24.2- org.libreoffice.LibreOffice. "
                            "org.libreoffice.LibreOffice. libreoffice_"));
    QCOMPARE(profiles[0], QStringLiteral("/home/mira/.config/libreoffice/4/user"));
    QCOMPARE(profiles[1], profiles[0]);
    QCOMPARE(profiles[2], QStringLiteral("/home/mira/.var/app/org.libreoffice.LibreOffice/config/"
                                         "libreoffice/4/user"));
    QCOMPARE(profiles[4],
             QStringLiteral("/home/mira/snap/libreoffice/current/.config/libreoffice/4/user"));
}

void TestInstallations::theNewestOfAFolderComesFirst()
{
    Scene scene;
    scene.install("/opt/libreoffice7.6", "7.6");
    scene.install("/opt/libreoffice24.2", "24.2");
    scene.install("/opt/libreoffice7.10", "7.10");
    QCOMPARE(scene.folders(), QStringList({QStringLiteral("/opt/libreoffice24.2"),
                                           QStringLiteral("/opt/libreoffice7.10"),
                                           QStringLiteral("/opt/libreoffice7.6")}));
}

void TestInstallations::componentsPluginsAndLanguagesAreThoseOfTheFiles()
{
    Scene scene;
    scene.install("/usr/lib/libreoffice", "7.4");
    for (const char *file :
         {"program/libswlo.so", "program/libsdlo.so", "program/libvclplug_genlo.so",
          "program/libvclplug_gtk3lo.so", "share/registry/Langpack-en-US.xcd",
          "share/registry/Langpack-de.xcd", "share/registry/writer.xcd"})
        scene.write(QStringLiteral("/usr/lib/libreoffice/") + QLatin1String(file));
    const Installation installation = scene.found().first();
    QCOMPARE(installation.components.join(QLatin1Char(' ')), QStringLiteral("draw impress writer"));
    QCOMPARE(installation.plugins.join(QLatin1Char(' ')), QStringLiteral("gen gtk3"));
    QCOMPARE(installation.languages.join(QLatin1Char(' ')), QStringLiteral("de en-US"));
}

void TestInstallations::theProfileIsThatOfTheBootstrapFile_data()
{
    QTest::addColumn<QString>("profile");
    QTest::newRow("$SYSUSERCONFIG/libreoffice/5") << "/home/mira/.config/libreoffice/5/user";
    QTest::newRow("$SYSUSERHOME/office") << "/home/mira/office/user";
    QTest::newRow("$ORIGIN/../profile") << "/usr/lib/libreoffice/profile/user";
    QTest::newRow("${ORIGIN}/../profile") << "/usr/lib/libreoffice/profile/user";
    QTest::newRow("file:///srv/my%20office") << "/srv/my office/user";
    QTest::newRow("$UNKNOWN/office") << "";
    QTest::newRow("vnd.sun.star.pathname:x") << "";
}

void TestInstallations::theProfileIsThatOfTheBootstrapFile()
{
    QFETCH(QString, profile);
    Scene scene;
    scene.install("/usr/lib/libreoffice", "7.4", QTest::currentDataTag());
    QCOMPARE(scene.found().first().profile, profile);
}

void TestInstallations::aFolderWithoutAVersionIsNoInstallation()
{
    Scene scene;
    scene.write(QStringLiteral("/opt/libreoffice-extras/program/bootstraprc"), "[Bootstrap]\n");
    scene.write(QStringLiteral("/opt/libreofficedata/readme"), "none");
    QVERIFY(scene.found().isEmpty());
}

void TestInstallations::theChoiceIsKept()
{
    Scene scene;
    scene.install("/usr/lib/libreoffice", "7.4");
    scene.install("/opt/libreoffice24.2", "24.2");
    QCOMPARE(scene.chosenFolder(), QStringLiteral("/usr/lib/libreoffice"));
    QCOMPARE(keepChoice(scene.found().last(), scene.machine()), QString());
    QCOMPARE(scene.chosenFolder(), QStringLiteral("/opt/libreoffice24.2"));
}

void TestInstallations::aChoiceThatIsGoneIsForgotten()
{
    Scene scene;
    scene.install("/usr/lib/libreoffice", "7.4");
    scene.write(QStringLiteral("/home/mira/.config/office-assistant/suites/libreoffice"),
                "/opt/libreoffice7.0\n");
    QCOMPARE(scene.chosenFolder(), QStringLiteral("/usr/lib/libreoffice"));
}

void TestInstallations::everyPackageHasANameForDebian()
{
    for (const Description &description : descriptions()) {
        QVERIFY(!description.packages.isEmpty());
        for (const auto &names : description.packages)
            QVERIFY(!names.value(QStringLiteral("debian")).isEmpty());
    }
}

QTEST_GUILESS_MAIN(TestInstallations)
#include "tst_installations.moc"
