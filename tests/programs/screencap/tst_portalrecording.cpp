#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

#include "tests/programs/screengrab/privatebus.h"

namespace {

constexpr int patience = 20'000;
const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString sessionPath = portalPath + QStringLiteral("/session/1_1/s");

/// A stream as the portal describes it.
struct Stream
{
    uint node = 0;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Stream &stream)
{
    argument.beginStructure();
    argument << stream.node << stream.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Stream &stream)
{
    argument.beginStructure();
    argument >> stream.node >> stream.properties;
    argument.endStructure();
    return argument;
}

} // namespace

Q_DECLARE_METATYPE(Stream)

/// A portal for screen casts whose stream is a pipe with the text "pictures".
class FakeCastPortal : public QDBusVirtualObject
{
    Q_OBJECT

public:
    explicit FakeCastPortal(const QDBusConnection &bus) : m_bus(bus)
    {
        m_bus.registerVirtualObject(portalPath, this);
        m_bus.registerService(service);
    }

    /// The method whose request the user answers with no; empty for none.
    QString refused;
    QStringList calls;

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        const QString method = message.member();
        calls.append(method);
        if (method == QLatin1String("OpenPipeWireRemote"))
            return m_bus.send(
                message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(pictures()))));
        const QString request = portalPath + QStringLiteral("/request/1_1/") + method;
        m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        QVariantMap results;
        if (method == QLatin1String("CreateSession"))
            results.insert(QStringLiteral("session_handle"), sessionPath);
        else if (message.arguments().at(0).value<QDBusObjectPath>().path() != sessionPath)
            return false;
        if (method == QLatin1String("Start"))
            results.insert(QStringLiteral("streams"), QVariant::fromValue(QList<Stream>{{42, {}}}));
        QDBusMessage response = QDBusMessage::createSignal(
            request, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        response << (method == refused ? 1U : 0U) << results;
        return m_bus.send(response);
    }

private:
    static int pictures()
    {
        int ends[2] = {-1, -1};
        const bool isOpen = ::pipe(ends) == 0 && ::write(ends[1], "pictures", 8) == 8;
        ::close(ends[1]);
        return isOpen ? ends[0] : -1;
    }

    QDBusConnection m_bus;
};

/// A recording in a Wayland session: the real program, with a portal and a GStreamer of the test.
class TestPortalRecording : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qDBusRegisterMetaType<Stream>();
        qDBusRegisterMetaType<QList<Stream>>();
        QVERIFY(QDir(m_home.path()).mkpath(QStringLiteral("bin")));
        QFile program(m_home.filePath(QStringLiteral("bin/gst-launch-1.0")));
        QVERIFY(program.open(QIODevice::WriteOnly));
        // It stays until it is interrupted, as the real one does.
        program.write("#!/bin/bash\n"
                      "trap 'exit 0' INT\n"
                      "for word; do case $word in\n"
                      "location=*) file=${word#location=} ;;\n"
                      "fd=*) stream=${word#fd=} ;;\n"
                      "esac; done\n"
                      "pictures=$(cat /proc/self/fd/$stream)\n"
                      "echo \"$pictures $2 $4\" > \"$file\"\n"
                      "while :; do sleep 0.02; done\n");
        program.close();
        program.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        m_portal = std::make_unique<FakeCastPortal>(m_bus.connection(QStringLiteral("portal")));
    }

    void cleanup()
    {
        m_portal->refused.clear();
        m_portal->calls.clear();
        for (const QString &name : videos().entryList(QDir::Files | QDir::Hidden))
            QFile::remove(videos().filePath(name));
    }

    void theStreamOfThePortalIsRecorded()
    {
        QProcess recorder;
        start(recorder);
        QTRY_VERIFY_WITH_TIMEOUT(sizeOfUnfinished() > 0, patience);
        recorder.terminate();
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), QProcess::NotRunning, patience);
        QCOMPARE(recorder.readAllStandardError(), QByteArray());
        QCOMPARE(recorder.exitCode(), 0);
        QFile file(QFile::decodeName(recorder.readAllStandardOutput().trimmed()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("pictures pipewiresrc path=42\n"));
        QCOMPARE(m_portal->calls,
                 (QStringList{QStringLiteral("CreateSession"), QStringLiteral("SelectSources"),
                              QStringLiteral("Start"), QStringLiteral("OpenPipeWireRemote")}));
    }

    void aUserWhoSaysNoIsNotRecorded_data()
    {
        QTest::addColumn<QString>("refused");
        for (const char *method : {"CreateSession", "SelectSources", "Start"})
            QTest::newRow(method) << QString::fromLatin1(method);
    }

    void aUserWhoSaysNoIsNotRecorded()
    {
        QFETCH(QString, refused);
        m_portal->refused = refused;
        QProcess recorder;
        start(recorder);
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), QProcess::NotRunning, patience);
        QCOMPARE(recorder.exitCode(), 1);
        QCOMPARE(recorder.readAllStandardError(), QByteArray("the desktop or its user said no\n"));
        QVERIFY(videos().entryList(QDir::Files | QDir::Hidden).isEmpty());
    }

private:
    QDir videos() const { return QDir(m_home.filePath(QStringLiteral("Videos"))); }

    qint64 sizeOfUnfinished() const
    {
        const QFileInfoList files = videos().entryInfoList(QDir::Files | QDir::Hidden);
        return files.isEmpty() ? 0 : files.first().size();
    }

    void start(QProcess &recorder)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"DISPLAY", "XDG_CONFIG_HOME"})
            environment.remove(QLatin1String(name));
        environment.insert(QStringLiteral("HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_home.path());
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        environment.insert(QStringLiteral("PATH"),
                           m_home.filePath(QStringLiteral("bin:/usr/bin:/bin")));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_bus.address());
        environment.insert(QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland-test"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        recorder.setProcessEnvironment(environment);
        recorder.start(
            QStringLiteral(SUITE_OFFICE_DIR "/addons/vyrassistanttool/screencap/screencap"), {});
    }

    QTemporaryDir m_home;
    testsupport::PrivateBus m_bus;
    std::unique_ptr<FakeCastPortal> m_portal;
};

QTEST_GUILESS_MAIN(TestPortalRecording)
#include "tst_portalrecording.moc"
