#include <QDir>
#include <QImage>
#include <QProcess>
#include <QUrl>

#include <memory>

#include "programs/screengrab/picturefile.h"
#include "tests/programs/screengrab/coloreddisplay.h"
#include "tests/programs/screengrab/fakeportal.h"
#include "tests/programs/screengrab/privatebus.h"
#include "tests/support/shell/headlesstest.h"

namespace {

const QString program =
    QStringLiteral(SUITE_OFFICE_DIR "/addons/vyrassistanttool/independScreenshot/screengrab");
constexpr QRgb rootColor = testsupport::ColoredDisplay::color;
constexpr int programTimeoutMs = 30'000;

struct Outcome
{
    int status = -1;
    QString output;
    QString error;
};

} // namespace

/// The screenshot program with portals and displays of several kinds.
class ScreenGrabProgramTest : public QObject
{
    Q_OBJECT

private:
    static QString pictures()
    {
        return testsupport::PrivateHome::current().path() + QStringLiteral("/Pictures");
    }

    static QStringList savedPictures()
    {
        return QDir(pictures()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    /// Runs the program with these variables; processes events meanwhile for the fakes.
    static Outcome run(const QMap<QString, QString> &variables)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE"})
            environment.remove(QString::fromLatin1(name));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
        for (auto entry = variables.begin(); entry != variables.end(); ++entry)
            environment.insert(entry.key(), entry.value());
        process.setProcessEnvironment(environment);
        process.start(program, QStringList());
        if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; },
                             programTimeoutMs))
            qFatal("%s does not end", qPrintable(program));
        return {process.exitCode(), QFile::decodeName(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    Outcome runWithPortal(QMap<QString, QString> variables = {}) const
    {
        variables.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_bus->address());
        return run(variables);
    }

    static QString portalPicture(const QString &name)
    {
        const QString path = testsupport::PrivateHome::current().writeFile(name, {});
        QImage image(3, 2, QImage::Format_RGB32);
        image.fill(rootColor);
        if (!image.save(path, "PNG"))
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    std::unique_ptr<testsupport::PrivateBus> m_bus;
    std::unique_ptr<testsupport::FakePortal> m_portal;

private slots:
    void initTestCase() { m_bus = std::make_unique<testsupport::PrivateBus>(); }

    void init()
    {
        QDir(pictures()).removeRecursively();
        m_portal =
            std::make_unique<testsupport::FakePortal>(m_bus->connection(QStringLiteral("portal")));
    }

    void cleanup()
    {
        m_portal.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
    }

    void cleanupTestCase() { m_bus.reset(); }

    void theScreenOfADisplayIsSaved_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QSize>("size");
        QTest::newRow("24 bits") << QStringLiteral("64x48x24") << QSize(64, 48);
        QTest::newRow("16 bits and an odd width") << QStringLiteral("63x48x16") << QSize(63, 48);
        QTest::newRow("30 bits") << QStringLiteral("64x48x30") << QSize(64, 48);
    }

    void theScreenOfADisplayIsSaved()
    {
        QFETCH(QString, screen);
        QFETCH(QSize, size);
        const testsupport::ColoredDisplay display(screen);
        const Outcome outcome = run({{QStringLiteral("DISPLAY"), display.name()}});
        QCOMPARE(outcome.error, QString());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(savedPictures().size(), 1);
        QCOMPARE(outcome.output,
                 pictures() + QLatin1Char('/') + savedPictures().at(0) + QLatin1Char('\n'));
        const QImage image(outcome.output.trimmed());
        QCOMPARE(image.size(), size);
        const QColor color(image.pixel(size.width() - 1, size.height() - 1));
        QVERIFY2(qAbs(color.red() - qRed(rootColor)) < 9 &&
                     qAbs(color.green() - qGreen(rootColor)) < 9 &&
                     qAbs(color.blue() - qBlue(rootColor)) < 9,
                 qPrintable(color.name()));
        QCOMPARE(QFile::permissions(outcome.output.trimmed()) &
                     (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }

    void thePicturesFolderIsTheOneThatTheUserHasSet()
    {
        const auto &home = testsupport::PrivateHome::current();
        const QString setting = home.writeFile(QStringLiteral(".config/user-dirs.dirs"),
                                               "XDG_PICTURES_DIR=\"$HOME/图片/屏幕\"\n");
        const testsupport::ColoredDisplay display(QStringLiteral("64x48x24"));
        const Outcome outcome = run({{QStringLiteral("DISPLAY"), display.name()}});
        QFile::remove(setting);
        QCOMPARE(outcome.status, 0);
        QVERIFY(outcome.output.startsWith(home.path() + QStringLiteral("/图片/屏幕/screenshot-")));
        QVERIFY(QFile::exists(outcome.output.trimmed()));
        QVERIFY(savedPictures().isEmpty());
    }

    void withoutADisplayNoPictureIsTaken()
    {
        const Outcome outcome = run({});
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.error,
                 QStringLiteral("there is no display whose screen could be taken\n"));
        QVERIFY(savedPictures().isEmpty());
    }

    void aPortalGoesBeforeTheDisplay()
    {
        const testsupport::ColoredDisplay display(QStringLiteral("64x48x24"));
        const QString copy = portalPicture(QStringLiteral("portal/shot.png"));
        m_portal->picture = QUrl::fromLocalFile(copy).toString();
        const Outcome outcome = runWithPortal({{QStringLiteral("DISPLAY"), display.name()}});
        QCOMPARE(outcome.status, 0);
        QCOMPARE(QImage(outcome.output.trimmed()).size(), QSize(3, 2));
        QCOMPARE(m_portal->requests.size(), 1);
        QCOMPARE(m_portal->requests.at(0).value(QStringLiteral("interactive")), QVariant(false));
        // The user would not look for the desktop's copy.
        QVERIFY(!QFile::exists(copy));
        QCOMPARE(m_portal->notices,
                 QStringList({QStringLiteral("Screenshot saved"), outcome.output.trimmed()}));
    }

    void aPictureThatThePortalSavesInTheFolderStays()
    {
        const QString copy = portalPicture(QStringLiteral("Pictures/Screenshot from now.png"));
        m_portal->picture = QUrl::fromLocalFile(copy).toString();
        const Outcome outcome = runWithPortal();
        QCOMPARE(outcome.output, copy + QLatin1Char('\n'));
        QCOMPARE(savedPictures(), QStringList{QStringLiteral("Screenshot from now.png")});
    }

    void theAnswerOfAnotherRequestIsNotTaken()
    {
        m_portal->answer = testsupport::FakePortal::AnswerOtherRequestFirst;
        m_portal->picture =
            QUrl::fromLocalFile(portalPicture(QStringLiteral("portal/shot.png"))).toString();
        const Outcome outcome = runWithPortal();
        QCOMPARE(outcome.status, 0);
    }

    void aUserWhoSaysNoIsNotGoneRound()
    {
        const testsupport::ColoredDisplay display(QStringLiteral("64x48x24"));
        m_portal->response = 1;
        const Outcome outcome = runWithPortal({{QStringLiteral("DISPLAY"), display.name()}});
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.error, QStringLiteral("the desktop or its user said no\n"));
        QVERIFY(savedPictures().isEmpty());
        QCOMPARE(m_portal->notices.value(0), QStringLiteral("No screenshot was taken"));
    }

    void theReasonIsToldInTheUsersLanguage()
    {
        m_portal->response = 1;
        const Outcome outcome =
            runWithPortal({{QStringLiteral("LANGUAGE"), QStringLiteral("zh_CN")}});
        QCOMPARE(outcome.error, QStringLiteral("桌面或用户拒绝了截图请求\n"));
        QCOMPARE(m_portal->notices, QStringList({QStringLiteral("未能截图"),
                                                 QStringLiteral("桌面或用户拒绝了截图请求")}));
    }

    void aPortalThatFailsIsReplacedByTheDisplay_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<uint>("response");
        QTest::addColumn<QString>("picture");
        const QString none = QStringLiteral("file:///nowhere/shot.png");
        QTest::newRow("refusing the call")
            << int(testsupport::FakePortal::RefuseCall) << 0U << none;
        QTest::newRow("ending badly") << int(testsupport::FakePortal::AnswerRequest) << 2U << none;
        QTest::newRow("without a picture")
            << int(testsupport::FakePortal::AnswerRequest) << 0U << none;
        QTest::newRow("with a picture elsewhere")
            << int(testsupport::FakePortal::AnswerRequest) << 0U
            << QStringLiteral("http://localhost/shot.png");
    }

    void aPortalThatFailsIsReplacedByTheDisplay()
    {
        QFETCH(int, answer);
        QFETCH(uint, response);
        QFETCH(QString, picture);
        m_portal->answer = static_cast<testsupport::FakePortal::Answer>(answer);
        m_portal->response = response;
        m_portal->picture = picture;
        const testsupport::ColoredDisplay display(QStringLiteral("64x48x24"));
        const Outcome outcome = runWithPortal({{QStringLiteral("DISPLAY"), display.name()}});
        QCOMPARE(outcome.error, QString());
        QCOMPARE(QImage(outcome.output.trimmed()).size(), QSize(64, 48));
    }

    void aPortalThatGoesAwayIsNotWaitedFor()
    {
        m_portal->answer = testsupport::FakePortal::LeaveTheBus;
        const Outcome outcome = runWithPortal();
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.error, QStringLiteral("the desktop's portal gave no answer\n"));
    }

    void onWaylandTheDisplayOfOlderProgramsIsNotTaken()
    {
        const testsupport::ColoredDisplay display(QStringLiteral("64x48x24"));
        m_portal.reset();
        const Outcome outcome =
            runWithPortal({{QStringLiteral("DISPLAY"), display.name()},
                           {QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland-0")}});
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.error, QStringLiteral("the desktop has no portal for screenshots\n"));
        QVERIFY(savedPictures().isEmpty());
    }

    void aFolderThatCannotBeWrittenToIsTold()
    {
        testsupport::PrivateHome::current().writeFile(QStringLiteral("Pictures"), "a file");
        const testsupport::ColoredDisplay display(QStringLiteral("64x48x24"));
        const Outcome outcome = run({{QStringLiteral("DISPLAY"), display.name()}});
        QFile::remove(pictures());
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.error, QStringLiteral("the folder cannot be made: %1\n").arg(pictures()));
    }

    void picturesOfOneSecondDoNotReplaceEachOther()
    {
        QImage image(2, 2, QImage::Format_RGB32);
        image.fill(rootColor);
        const QDateTime moment(QDate(2026, 1, 2), QTime(3, 4, 5));
        const auto save = [&] {
            return programs::savePicture(programs::GrabbedPicture::taken(image), pictures(), moment)
                .path;
        };
        const QString first = save();
        const QString second = save();
        QCOMPARE(savedPictures(),
                 QStringList({QStringLiteral("screenshot-2026-01-02-030405-2.png"),
                              QStringLiteral("screenshot-2026-01-02-030405.png")}));
        QVERIFY(first != second);
    }
};

HEADLESS_TEST_MAIN(ScreenGrabProgramTest)
#include "tst_screengrabprogram.moc"
