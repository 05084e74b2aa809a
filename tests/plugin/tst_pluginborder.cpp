#include <QApplication>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <dlfcn.h>

#include "host/kheliopluginwidgetfactory.h"
#include "host/kxwebviewasynjsobject.h"
#include "tests/support/patience.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/recordingbrowser.h"

using testsupport::PrivateHome;
using testsupport::RecordingBrowser;

namespace {

const char libraryPath[] = SUITE_OFFICE_DIR "/addons/vyrassistanttool/libofficeassistant.so";

/// The built plug-in for as long as this object lives.
class LoadedPlugin
{
public:
    LoadedPlugin() : m_handle(::dlopen(libraryPath, RTLD_NOW | RTLD_LOCAL))
    {
        if (!m_handle)
            qFatal("%s", ::dlerror());
    }

    ~LoadedPlugin() { ::dlclose(m_handle); }

private:
    Q_DISABLE_COPY_MOVE(LoadedPlugin)

    void *m_handle;
};

/// The embedded scripts, without the type package that the shell registers beside them.
QStringList embeddedScripts()
{
    return QDir(QStringLiteral(":/config"), QStringLiteral("*.sh")).entryList();
}

KHelioPluginWidgetFactoryItemBase *registeredItem()
{
    return KHelioPluginWidgetFactory::pagePlugin(64);
}

bool isMapped()
{
    return testsupport::readFile(QStringLiteral("/proc/self/maps"))
        .contains("/libofficeassistant.so");
}

bool isKnownToTheLinker()
{
    void *handle = ::dlopen(libraryPath, RTLD_NOW | RTLD_NOLOAD);
    if (handle)
        ::dlclose(handle);
    return handle;
}

/// The functions of the built library that initialise its globals, by source file. Those of the
/// sanitizers have a priority of five digits in their names.
QStringList initialisers()
{
    QProcess nm;
    nm.start(QStringLiteral("nm"), {QLatin1String(libraryPath)});
    if (!nm.waitForFinished(testsupport::longestWaitMs) || nm.exitCode() != 0)
        qFatal("nm cannot read %s", libraryPath);
    static const QRegularExpression symbol(
        QStringLiteral("^\\S+ t _GLOBAL__sub_I_(?!\\d{5}_)(\\S+\\.cpp)$"),
        QRegularExpression::MultilineOption);
    QStringList files;
    auto matches = symbol.globalMatch(QString::fromLatin1(nm.readAllStandardOutput()));
    while (matches.hasNext())
        files.append(matches.next().captured(1));
    return files;
}

QString writeStaged(const QString &name)
{
    return PrivateHome::current().writeFile(
        QStringLiteral(".local/share/Orvane/tmp/officeassis_script/") + name, "true\n");
}

} // namespace

#define VERIFY_NOT_LOADED()                                                                        \
    do {                                                                                           \
        QVERIFY(!registeredItem());                                                                \
        QVERIFY(embeddedScripts().isEmpty());                                                      \
        QVERIFY(!isKnownToTheLinker());                                                            \
        QVERIFY(!isMapped());                                                                      \
    } while (false)

/// Loading and unloading the built library, as a shell does.
class PluginBorderTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { VERIFY_NOT_LOADED(); }

    void loadingRegistersTheItemAndTheScriptsAndUnloadingTakesThemBack_data()
    {
        QTest::addColumn<int>("round");
        QTest::newRow("first time") << 1;
        QTest::newRow("second time") << 2;
    }

    void loadingRegistersTheItemAndTheScriptsAndUnloadingTakesThemBack()
    {
        {
            const LoadedPlugin plugin;
            QVERIFY(registeredItem());
            QCOMPARE(registeredItem()->type(), 64);
            QVERIFY(registeredItem()->hasMethod(QStringLiteral("sigShowChildWindow")));
            QVERIFY(QFileInfo::exists(QStringLiteral(":/config/getfileinfo.sh")));
            QCOMPARE(embeddedScripts().size(), 12);
        }
        VERIFY_NOT_LOADED();
    }

    void loadingInitialisesOnlyTheItemAndTheScripts()
    {
        QCOMPARE(initialisers(), QStringList({QStringLiteral("qrc_config.cpp"),
                                              QStringLiteral("registration.cpp")}));
    }

    void theLibraryCanBeUnloadedAfterAPageHasWorked_data()
    {
        loadingRegistersTheItemAndTheScriptsAndUnloadingTakesThemBack_data();
    }

    void theLibraryCanBeUnloadedAfterAPageHasWorked()
    {
        {
            const LoadedPlugin plugin;
            QWidget window;
            window.setProperty("widgettype", QStringLiteral("main"));
            registeredItem()->create(&window);
            RecordingBrowser *browser = RecordingBrowser::latest();
            auto *api = qobject_cast<KxWebViewAsynJSObject *>(browser->askForApi());
            QVERIFY(api);
            for (const char *command : {"getcollectionpage", "stratextractfileinfo", "router"})
                api->fromJSAsynCall(QStringLiteral(R"({"command":"%1","callback":"back"})")
                                        .arg(QLatin1String(command)));
            QVERIFY(browser->container.calls.size() >= 3);
        }
        VERIFY_NOT_LOADED();
        // Nothing left behind points into the library.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    void unloadingEmptiesTheStagingDirectoryButKeepsDirectories()
    {
        const QString script = writeStaged(QStringLiteral("earlier.sh"));
        const QString hidden = writeStaged(QStringLiteral(".hidden"));
        const QString below = writeStaged(QStringLiteral("below/kept.sh"));
        {
            const LoadedPlugin plugin;
            QWidget window;
            registeredItem()->create(&window);
            // The first script object makes the manager, whose end empties the directory.
            QVERIFY(RecordingBrowser::latest()->askForApi());
            QVERIFY(QFileInfo::exists(script));
        }
        QVERIFY(!QFileInfo::exists(script));
        QVERIFY(QFileInfo::exists(hidden));
        QVERIFY(QFileInfo::exists(below));
    }

    void unloadingALibraryWithoutAPageLeavesTheStagingDirectoryAlone()
    {
        const QString script = writeStaged(QStringLiteral("earlier.sh"));
        {
            const LoadedPlugin plugin;
        }
        QVERIFY(QFileInfo::exists(script));
    }

    void theEndOfTheProgramEmptiesTheStagingDirectoryButKeepsDirectories()
    {
        const QString script = writeStaged(QStringLiteral("earlier.sh"));
        const QString below = writeStaged(QStringLiteral("below/kept.sh"));
        QProcess program;
        program.start(QStringLiteral(SUITE_OFFICE_DIR "/assistantctl"),
                      {QStringLiteral("getcollectionpage")});
        QVERIFY(program.waitForFinished(testsupport::longestWaitMs));
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(!QFileInfo::exists(script));
        QVERIFY(QFileInfo::exists(below));
    }
};

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const PrivateHome home;
    const QApplication application(argc, argv);
    RecordingBrowser::install();
    PluginBorderTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_pluginborder.moc"
