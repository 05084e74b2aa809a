#include <QSignalSpy>
#include <QVBoxLayout>

#include <memory>

#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "plugin/kvyrassistanttool.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingbrowser.h"

using OfficeAssiant::KToolManager;
using testsupport::RecordingBrowser;

namespace {

QString urlOf(const QString &page)
{
    return QStringLiteral("file://") + QCoreApplication::applicationDirPath() +
           QStringLiteral("/addons/vyrassistanttool/officeassistant/resource/html/") + page;
}

/// A page in its own window.
struct Page
{
    explicit Page(const QVariantMap &properties = {})
    {
        for (auto property = properties.begin(); property != properties.end(); ++property)
            window.setProperty(property.key().toLatin1().constData(), property.value());
        tool = new KVyrAssistantTool(&window);
        browser = RecordingBrowser::latest();
    }

    static Page ofType(const QString &type) { return Page({{QStringLiteral("widgettype"), type}}); }

    QString startupUrl() const
    {
        const QStringList urls = browser->calls.filter(QStringLiteral("setStartupUrl("));
        return urls.size() == 1 ? urls.first().section(QLatin1Char('('), 1).chopped(1) : QString();
    }

    /// Reports a browser, as a shell does through the creator.
    void report(KHelioBrowserWidgetBase *created) const
    {
        QVERIFY(QMetaObject::invokeMethod(tool, "onCreateSucceeded",
                                          Q_ARG(KHelioBrowserWidgetBase *, created)));
    }

    void changeTo(const QString &page) const
    {
        QVERIFY(QMetaObject::invokeMethod(tool, "onChangeChildHtmlPage", Q_ARG(QString, page)));
    }

    QWidget window;
    KVyrAssistantTool *tool = nullptr;
    RecordingBrowser *browser = nullptr;
};

} // namespace

/// The page widget: how it sets its browser up and what it passes on.
class PageWidgetTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        RecordingBrowser::install();
        KToolManager::instance().setMainPageBridge(nullptr);
        KToolManager::instance().setChildPageBridge(nullptr);
    }

    void theBrowserIsSetUpInItsOrder()
    {
        const Page page;
        QCOMPARE(page.browser->calls,
                 QStringList(
                     {QStringLiteral("setZoomLevel(0)"),
                      QStringLiteral("setStartupUrl(%1)").arg(urlOf(QStringLiteral("index.html"))),
                      QStringLiteral("setFeatureEnabled(32, false)"),
                      QStringLiteral("setFeatureEnabled(8192, false)"),
                      QStringLiteral("setFocusOnLoad(true)")}));
        QCOMPARE(page.browser->objectName(), QStringLiteral("kheliooffice_assiwidget"));
        QCOMPARE(static_cast<int>(page.browser->flag), 1);
    }

    void theBrowserFillsTheWidget()
    {
        const Page page;
        const auto *layout = qobject_cast<QVBoxLayout *>(page.tool->layout());
        QVERIFY(layout);
        QCOMPARE(layout->spacing(), 0);
        QCOMPARE(layout->contentsMargins(), QMargins());
        QCOMPARE(layout->count(), 1);
        QCOMPARE(layout->itemAt(0)->widget(), page.browser);
        QCOMPARE(page.browser->parentWidget(), page.tool);
    }

    void anAbsentHtmlPathStartsWithIndexHtml()
    {
        QCOMPARE(Page().startupUrl(), urlOf(QStringLiteral("index.html")));
    }

    void anEmptyHtmlPathStartsWithIndexHtml()
    {
        const Page page({{QStringLiteral("htmlpath"), QString()}});
        QCOMPARE(page.startupUrl(), urlOf(QStringLiteral("index.html")));
    }

    void anotherHtmlPathStartsWithThatFile()
    {
        const Page page({{QStringLiteral("htmlpath"), QStringLiteral("crash.html")}});
        QCOMPARE(page.startupUrl(), urlOf(QStringLiteral("crash.html")));
    }

    void specialCharactersOfAFileNameStayPartOfThePath()
    {
        const Page page({{QStringLiteral("htmlpath"), QStringLiteral("a#b?c%d.html")}});
        const QUrl url(page.startupUrl());
        QVERIFY(url.isLocalFile());
        QVERIFY(!url.hasFragment() && !url.hasQuery());
        QCOMPARE(url.fileName(), QStringLiteral("a#b?c%d.html"));
    }

    void mainSetsTheMainPageBridge()
    {
        Page page = Page::ofType(QStringLiteral("main"));
        QObject *api = page.browser->askForApi();
        QVERIFY(qobject_cast<KVyrAssistantToolAPI *>(api));
        QCOMPARE(api->parent(), &page.browser->container);
        QCOMPARE(KToolManager::instance().mainPageBridge(), api);
        QVERIFY(!KToolManager::instance().childPageBridge());
    }

    void childSetsTheChildPageBridge()
    {
        Page page = Page::ofType(QStringLiteral("child"));
        QObject *api = page.browser->askForApi();
        QCOMPARE(KToolManager::instance().childPageBridge(), api);
        QVERIFY(!KToolManager::instance().mainPageBridge());
    }

    void anotherWidgetTypeSetsNeitherBridge_data()
    {
        QTest::addColumn<QString>("type");
        QTest::newRow("other case") << QStringLiteral("Main");
        QTest::newRow("blank") << QStringLiteral("main ");
        QTest::newRow("empty") << QString();
        QTest::newRow("other case of child") << QStringLiteral("CHILD");
    }

    void anotherWidgetTypeSetsNeitherBridge()
    {
        QFETCH(QString, type);
        Page page = Page::ofType(type);
        QVERIFY(page.browser->askForApi());
        QVERIFY(!KToolManager::instance().mainPageBridge());
        QVERIFY(!KToolManager::instance().childPageBridge());
    }

    void theLaterOfTwoMainPagesIsTheMainPage()
    {
        Page first = Page::ofType(QStringLiteral("main"));
        Page second = Page::ofType(QStringLiteral("main"));
        first.browser->askForApi();
        QObject *later = second.browser->askForApi();
        QCOMPARE(KToolManager::instance().mainPageBridge(), later);
    }

    void aClosedMainPageIsNotSpokenToAnyMore()
    {
        {
            Page page = Page::ofType(QStringLiteral("main"));
            page.browser->askForApi();
        }
        QVERIFY(!KToolManager::instance().mainPageBridge());
    }

    void closingTheEarlierMainPageKeepsTheLaterOne()
    {
        auto first = std::make_unique<Page>(
            QVariantMap{{QStringLiteral("widgettype"), QStringLiteral("main")}});
        Page second = Page::ofType(QStringLiteral("main"));
        first->browser->askForApi();
        QObject *later = second.browser->askForApi();
        first.reset();
        QCOMPARE(KToolManager::instance().mainPageBridge(), later);
    }

    void aFailedLoadStillFitsTheWidgetToItsParent()
    {
        Page page;
        page.window.resize(640, 480);
        QVERIFY(page.tool->size() != page.window.size());
        emit page.browser->loadFinished(false);
        QCOMPARE(page.tool->size(), QSize(640, 480));
        page.window.resize(320, 200);
        emit page.browser->loadFinished(true);
        QCOMPARE(page.tool->size(), QSize(320, 200));
    }

    void aPageWithoutAParentWorksAndKeepsItsSize()
    {
        KVyrAssistantTool tool(nullptr);
        tool.resize(123, 45);
        RecordingBrowser *browser = RecordingBrowser::latest();
        QVERIFY(browser->calls.contains(
            QStringLiteral("setStartupUrl(%1)").arg(urlOf(QStringLiteral("index.html")))));
        emit browser->loadFinished(true);
        QCOMPARE(tool.size(), QSize(123, 45));
        QVERIFY(browser->askForApi());
        QVERIFY(!KToolManager::instance().mainPageBridge());
    }

    void aKeyIsNeverMarkedHandled()
    {
        const Page page;
        QVERIFY(page.browser->hasReceiver(
            QMetaMethod::fromSignal(&KHelioBrowserWidgetBase::cefKeyEvent)));
        bool handled = false;
        emit page.browser->cefKeyEvent(Qt::ControlModifier, Qt::Key_F5, true, handled);
        QVERIFY(!handled);
        handled = true;
        emit page.browser->cefKeyEvent(Qt::NoModifier, Qt::Key_A, false, handled);
        QVERIFY(handled);
    }

    void changingTheChildPageNavigatesTheBrowser()
    {
        const Page page;
        page.browser->calls.clear();
        QVERIFY(QMetaObject::invokeMethod(page.tool, "onChangeChildHtmlPage",
                                          Q_ARG(QString, QStringLiteral("sysinfo.html"))));
        QCOMPARE(
            page.browser->calls,
            QStringList{QStringLiteral("navigate(%1)").arg(urlOf(QStringLiteral("sysinfo.html")))});
    }

    void aPageWithoutABrowserStaysEmptyAndDoesNotFail()
    {
        RecordingBrowser::installNone();
        QWidget window;
        KVyrAssistantTool tool(&window);
        QVERIFY(!tool.layout());
        QVERIFY(tool.findChildren<KHelioBrowserWidgetBase *>().isEmpty());
        QVERIFY(QMetaObject::invokeMethod(&tool, "onChangeChildHtmlPage",
                                          Q_ARG(QString, QStringLiteral("sysinfo.html"))));
    }

    void aBrowserThatTheShellDeletedIsNotTouchedAgain()
    {
        const Page page;
        delete page.browser;
        page.changeTo(QStringLiteral("sysinfo.html"));
        RecordingBrowser next(page.tool);
        page.report(&next);
        QVERIFY(next.calls.contains(
            QStringLiteral("setStartupUrl(%1)").arg(urlOf(QStringLiteral("sysinfo.html")))));
    }

    void aFailedBrowserIsIgnored()
    {
        const Page page;
        page.report(nullptr);
        page.browser->calls.clear();
        page.changeTo(QStringLiteral("sysinfo.html"));
        QCOMPARE(page.browser->calls.size(), 1);
    }

    void aSecondBrowserTakesThePlaceOfTheFirst()
    {
        Page page;
        page.window.resize(640, 480);
        page.window.show();
        page.tool->show();
        emit page.browser->loadFinished(true);
        auto *second = new RecordingBrowser(page.tool);
        page.report(second);
        QCoreApplication::processEvents();
        QCOMPARE(second->size(), QSize(640, 480));
        QVERIFY(second->isVisible());
        QVERIFY(!page.browser->isVisible());
        QCOMPARE(page.tool->layout()->count(), 1);
        QVERIFY(!page.browser->askForApi());
        QVERIFY(second->askForApi());
    }

    void aBrowserReportedTwiceIsSetUpOnce()
    {
        const Page page;
        page.report(page.browser);
        QCOMPARE(page.browser->calls.size(), 5);
        page.browser->askForApi();
        QCOMPARE(page.browser->container.children().size(), 1);
    }

    void aQuestionWithoutAPlaceForTheAnswerIsIgnored()
    {
        const Page page;
        emit page.browser->creatingApi(&page.browser->container, nullptr);
        QVERIFY(page.browser->container.children().isEmpty());
    }

    void theWidgetPaintsItsBorderOnly()
    {
        RecordingBrowser::installNone();
        KVyrAssistantTool tool(nullptr);
        tool.resize(20, 10);
        const QImage image = tool.grab().toImage().convertToFormat(QImage::Format_ARGB32);
        const QRgb border = tool.palette().color(QPalette::Mid).rgba();
        QCOMPARE(image.pixel(0, 0), border);
        QCOMPARE(image.pixel(19, 9), border);
        QVERIFY(image.pixel(10, 5) != border);
    }

    void everySignalOfTheBridgeIsPassedOn_data()
    {
        QTest::addColumn<QByteArray>("signal");
        for (const char *signal : {"sigCloseMainWindow()", "sigShowMinimized()", "sigShowNormal()",
                                   "sigCloseChildWindow()", "sigMousePress()", "sigMouseRelease()",
                                   "sigShowChildWindow(QString)", "sigChangeHtmlPage(QString)"})
            QTest::newRow(signal) << QByteArray(signal);
    }

    void everySignalOfTheBridgeIsPassedOn()
    {
        QFETCH(QByteArray, signal);
        Page page;
        QObject *api = page.browser->askForApi();
        // "2" is what the SIGNAL macro puts before a signature.
        QSignalSpy passedOn(page.tool, ('2' + signal).constData());
        const QString text =
            signal.endsWith("(QString)") ? QStringLiteral("crash.html") : QString();
        const QByteArray name = signal.left(signal.indexOf('('));
        QVERIFY(text.isEmpty()
                    ? QMetaObject::invokeMethod(api, name.constData())
                    : QMetaObject::invokeMethod(api, name.constData(), Q_ARG(QString, text)));
        QCOMPARE(passedOn.count(), 1);
        QCOMPARE(passedOn.first().value(0).toString(), text);
    }
};

HEADLESS_TEST_MAIN(PageWidgetTest)
#include "tst_pagewidget.moc"
