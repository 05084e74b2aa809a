#include <QApplication>
#include <QTest>

#include <dlfcn.h>

#include "host/kheliopluginwidgetfactory.h"
#include "host/kxwebviewasynjsobject.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/recordingbrowser.h"

using testsupport::RecordingBrowser;

namespace {

bool isMapped(const char *library)
{
    return testsupport::readFile(QStringLiteral("/proc/self/maps")).contains(library);
}

} // namespace

/// A program that offers what host/ declares itself, instead of linking libhelio.so.
class OtherRuntimeTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(!isMapped("/libhelio.so")); }

    void thePluginWorksWithTheFunctionsOfTheProgram_data()
    {
        QTest::addColumn<QByteArray>("library");
        QTest::addColumn<bool>("bringsHelio");
        QTest::newRow("its symbols were left to the program")
            << QByteArray(PROGRAM_PLUGIN) << false;
        QTest::newRow("it was linked with libhelio.so")
            << QByteArray(SUITE_OFFICE_DIR "/addons/vyrassistanttool/libofficeassistant.so")
            << true;
    }

    void thePluginWorksWithTheFunctionsOfTheProgram()
    {
        QFETCH(QByteArray, library);
        QFETCH(bool, bringsHelio);
        void *handle = ::dlopen(library.constData(), RTLD_NOW | RTLD_LOCAL);
        QVERIFY2(handle, ::dlerror());
        QCOMPARE(isMapped("/libhelio.so"), bringsHelio);
        // The register, the browser and the container are the program's.
        auto *item = KHelioPluginWidgetFactory::pagePlugin(64);
        QVERIFY(item);
        {
            QWidget window;
            item->create(&window);
            RecordingBrowser *browser = RecordingBrowser::latest();
            auto *api = qobject_cast<KxWebViewAsynJSObject *>(browser->askForApi());
            QVERIFY(api);
            api->fromJSAsynCall(
                QStringLiteral(R"({"command":"getcollectionpage","callback":"back"})"));
            QCOMPARE(browser->container.calls.size(), 1);
        }
        ::dlclose(handle);
        QVERIFY(!KHelioPluginWidgetFactory::pagePlugin(64));
    }
};

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const testsupport::PrivateHome home;
    const QApplication application(argc, argv);
    RecordingBrowser::install();
    OtherRuntimeTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_otherruntime.moc"
