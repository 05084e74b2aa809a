#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <cstdio>
#include <memory>

#include "doctor/why/input/input.h"

using doctor::InputCause;

namespace {

constexpr char typingWord[] = "type";
constexpr char title[] = "typed-into";
/// What an input method makes of Ctrl+Shift+U 4 e 2 d.
constexpr char composed[] = "中";
/// Of the bus or the plug-in.
constexpr int patience = 10000;

struct TypedCase
{
    /// None if empty.
    const char *module;
    bool hasFcitx;
    bool hasIbus;
    enum Plugins {
        Usual,
        Absent,
        Broken
    } plugins = Usual;
    bool isOnOtherBus = false;
};

constexpr std::array<TypedCase, 33> cases{{
    {"fcitx", true, false},
    {"", true, false},
    {"ibus", true, false},
    {"fcitx", true, false, TypedCase::Absent},
    {"fcitx", true, false, TypedCase::Usual, true},
    {"fcitx5", true, false},
    {"FCITX", true, false},
    {"compose", true, false},
    {"none", true, false},
    {"scim", true, false},
    {"fcitx", true, false, TypedCase::Broken},
    {"fcitx5", true, false, TypedCase::Absent},
    {"ibus", true, false, TypedCase::Absent},
    {"fcitx", false, false},
    {"ibus", false, false},
    {"", false, false},
    {"compose", false, false},
    {"scim", false, false},
    {"fcitx", false, false, TypedCase::Absent},
    {"ibus", false, false, TypedCase::Broken},
    // ibus itself composes nothing without a panel, so that no key shows that it works.
    {"", false, true},
    {"compose", false, true},
    {"fcitx", false, true},
    {"fcitx5", false, true},
    {"ibus", false, true, TypedCase::Absent},
    {"ibus", false, true, TypedCase::Broken},
    {"fcitx", true, true},
    {"fcitx5", true, true},
    {"", true, true},
    {"compose", true, true},
    {"fcitx", true, true, TypedCase::Absent},
    {"fcitx", true, true, TypedCase::Broken},
    {"fcitx", true, true, TypedCase::Usual, true},
}};

/// A program that is ended with the object.
class Started
{
public:
    Started(const QString &program, const QStringList &arguments,
            const QProcessEnvironment &environment)
    {
        m_process.setProcessEnvironment(environment);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(program, arguments);
        m_process.waitForStarted();
    }
    ~Started()
    {
        m_process.terminate();
        if (!m_process.waitForFinished(2000))
            m_process.kill();
        m_process.waitForFinished(2000);
    }

    QProcess &process() { return m_process; }
    QByteArray line()
    {
        if (!m_process.canReadLine())
            m_process.waitForReadyRead(patience);
        return m_process.readLine().trimmed();
    }

private:
    QProcess m_process;
};

int typeInto(QApplication &application)
{
    QLineEdit edit;
    edit.setWindowTitle(QString::fromLatin1(title));
    const auto say = [](const QByteArray &text) {
        std::puts(text.constData());
        std::fflush(stdout);
    };
    QObject::connect(&edit, &QLineEdit::textChanged,
                     [&say](const QString &text) { say(text.toUtf8()); });
    edit.show();
    return application.exec();
}

bool runs(const QString &program, const QStringList &arguments,
          const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    return process.waitForFinished(patience) && process.exitCode() == 0;
}

} // namespace

Q_DECLARE_METATYPE(TypedCase)

/// Whether the verdict is what a key typed into a real program shows.
class WhyInputTypedTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void theVerdictIsWhatAKeyShows_data();
    void theVerdictIsWhatAKeyShows();

private:
    void startFrameworks(const TypedCase &one);
    /// The program itself, or a copy with a configuration of its own.
    QString program(TypedCase::Plugins plugins) const;
    /// What is in the field once the keys have been typed.
    QByteArray typed(Started &field) const;

    QTemporaryDir m_home;
    std::unique_ptr<Started> m_display;
    std::unique_ptr<Started> m_bus;
    std::unique_ptr<Started> m_otherBus;
    std::unique_ptr<Started> m_fcitx;
    std::unique_ptr<Started> m_ibus;
    QString m_otherAddress;
    QProcessEnvironment m_environment;
};

void WhyInputTypedTest::initTestCase()
{
    // It looks at all processes of the user: nothing else may run an input method meanwhile.
    if (!qEnvironmentVariableIsSet("WHY_INPUT_TYPED"))
        QSKIP("run with WHY_INPUT_TYPED=1 where no input method is running");
    for (const char *needed : {"Xvfb", "xdotool", "fcitx5", "ibus-daemon", "dbus-daemon"}) {
        if (QStandardPaths::findExecutable(QLatin1String(needed)).isEmpty())
            QSKIP("a display and both input methods are needed");
    }
    m_environment = QProcessEnvironment::systemEnvironment();
    for (const char *name :
         {"QT_IM_MODULE", "GTK_IM_MODULE", "XMODIFIERS", "LC_ALL", "LC_CTYPE", "WAYLAND_DISPLAY",
          "QT_QPA_PLATFORM", "IBUS_ADDRESS", "XDG_CONFIG_HOME"})
        m_environment.remove(QLatin1String(name));
    m_environment.insert(QStringLiteral("HOME"), m_home.path());
    m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"),
                         m_home.path() + QStringLiteral("/.config"));
    m_environment.insert(QStringLiteral("LANG"), QStringLiteral("zh_CN.UTF-8"));
    m_display = std::make_unique<Started>(
        QStringLiteral("Xvfb"),
        QStringList{QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                    QStringLiteral("0"), QStringLiteral("640x480x24")},
        m_environment);
    m_environment.insert(QStringLiteral("DISPLAY"),
                         QLatin1Char(':') + QString::fromLatin1(m_display->line()));
}

void WhyInputTypedTest::startFrameworks(const TypedCase &one)
{
    const bool isRunning = m_fcitx != nullptr || m_ibus != nullptr;
    if (isRunning && one.hasFcitx == (m_fcitx != nullptr) && one.hasIbus == (m_ibus != nullptr))
        return;
    m_fcitx.reset();
    m_ibus.reset();
    m_bus.reset();
    m_otherBus.reset();
    const QStringList arguments{QStringLiteral("--session"), QStringLiteral("--nofork"),
                                QStringLiteral("--print-address")};
    const QString variable = QStringLiteral("DBUS_SESSION_BUS_ADDRESS");
    m_otherBus = std::make_unique<Started>(QStringLiteral("dbus-daemon"), arguments, m_environment);
    m_otherAddress = QString::fromUtf8(m_otherBus->line());
    m_bus = std::make_unique<Started>(QStringLiteral("dbus-daemon"), arguments, m_environment);
    m_environment.insert(variable, QString::fromUtf8(m_bus->line()));
    QDir(m_home.path()).removeRecursively();
    QVERIFY(QDir().mkpath(m_home.path()));
    if (one.hasFcitx)
        m_fcitx = std::make_unique<Started>(
            QStringLiteral("fcitx5"),
            QStringList{QStringLiteral("--disable"), QStringLiteral("wayland,waylandim")},
            m_environment);
    if (one.hasIbus)
        m_ibus = std::make_unique<Started>(QStringLiteral("ibus-daemon"),
                                           QStringList{QStringLiteral("--panel"),
                                                       QStringLiteral("disable"),
                                                       QStringLiteral("--xim")},
                                           m_environment);
    if (one.hasFcitx)
        QTRY_VERIFY_WITH_TIMEOUT(
            runs(QStringLiteral("dbus-send"),
                 {QStringLiteral("--session"), QStringLiteral("--print-reply"),
                  QStringLiteral("--dest=org.fcitx.Fcitx5"), QStringLiteral("/"),
                  QStringLiteral("org.freedesktop.DBus.Peer.Ping")},
                 m_environment),
            patience);
    if (one.hasIbus) {
        const QDir addresses(m_home.filePath(QStringLiteral(".config/ibus/bus")));
        QTRY_VERIFY_WITH_TIMEOUT(!addresses.entryList(QDir::Files).isEmpty(), patience);
    }
}

QString WhyInputTypedTest::program(TypedCase::Plugins plugins) const
{
    const QString own = QCoreApplication::applicationFilePath();
    if (plugins == TypedCase::Usual)
        return own;
    const QDir directory(m_home.filePath(QStringLiteral("program%1").arg(int(plugins))));
    const QString copy = directory.filePath(QStringLiteral("program"));
    if (QFile::exists(copy))
        return copy;
    directory.mkpath(QStringLiteral("plugins/platforminputcontexts"));
    const QString installed = QLibraryInfo::location(QLibraryInfo::PluginsPath);
    QFile::link(installed + QStringLiteral("/platforms"),
                directory.filePath(QStringLiteral("plugins/platforms")));
    QFile::copy(own, copy);
    QFile configuration(directory.filePath(QStringLiteral("qt.conf")));
    if (configuration.open(QIODevice::WriteOnly))
        configuration.write("[Paths]\nPlugins=plugins\n");
    if (plugins == TypedCase::Absent)
        return copy;
    for (const char *name : {"fcitx5", "ibus"}) {
        const QString file =
            QStringLiteral("/platforminputcontexts/lib%1platforminputcontextplugin.so")
                .arg(QLatin1String(name));
        QFile plugin(installed + file);
        QFile broken(directory.filePath(QStringLiteral("plugins")) + file);
        if (!plugin.open(QIODevice::ReadOnly) || !broken.open(QIODevice::WriteOnly))
            return {};
        QByteArray content = plugin.readAll();
        content[18] = 3; // another processor
        broken.write(content);
    }
    return copy;
}

QByteArray WhyInputTypedTest::typed(Started &field) const
{
    const auto xdotool = [this](const QStringList &arguments) {
        return runs(QStringLiteral("xdotool"), arguments, m_environment);
    };
    const QStringList window{QStringLiteral("search"), QStringLiteral("--sync"),
                             QStringLiteral("--name"), QString::fromLatin1(title)};
    if (!xdotool(window + QStringList{QStringLiteral("windowfocus"), QStringLiteral("--sync")}))
        return "no window";
    // The input method gets to know of the focus.
    QTest::qWait(400);
    for (const char *key : {"ctrl+shift+u", "4", "e", "2", "d", "space", "x"})
        xdotool({QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("30"),
                 QLatin1String(key)});
    QByteArray text;
    // The last key is the same with and without an input method.
    while (!text.endsWith('x')) {
        const QByteArray line = field.line();
        if (line.isEmpty())
            break;
        text = line;
    }
    return text;
}

void WhyInputTypedTest::theVerdictIsWhatAKeyShows_data()
{
    QTest::addColumn<TypedCase>("one");
    for (const TypedCase &one : cases)
        QTest::addRow("module %s, %s%s, plug-ins %d%s", one.module, one.hasFcitx ? "fcitx" : "",
                      one.hasIbus ? "ibus" : "", int(one.plugins),
                      one.isOnOtherBus ? ", other bus" : "")
            << one;
}

void WhyInputTypedTest::theVerdictIsWhatAKeyShows()
{
    QFETCH(TypedCase, one);
    startFrameworks(one);
    if (QTest::currentTestFailed())
        return;
    QProcessEnvironment environment = m_environment;
    if (*one.module != '\0')
        environment.insert(QStringLiteral("QT_IM_MODULE"), QLatin1String(one.module));
    if (one.isOnOtherBus)
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_otherAddress);
    Started field(program(one.plugins), {QLatin1String(typingWord)}, environment);
    const QByteArray text = typed(field);
    const doctor::InputReport report =
        doctor::whyInput(doctor::thisMachine(), field.process().processId());
    const bool works = text == composed + QByteArray("x");
    QVERIFY2(works == (report.cause == InputCause::None),
             qPrintable(QString::fromUtf8(text) + QStringLiteral(": ") + report.text));
    QCOMPARE(report.toolkit.name(), QStringLiteral("Qt ") + QLatin1String(qVersion()));
}

int main(int argc, char *argv[])
{
    const bool isField = argc > 1 && qstrcmp(argv[1], typingWord) == 0;
    if (!isField)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (isField)
        return typeInto(application);
    WhyInputTypedTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_whyinputtyped.moc"
