#include <memory>

#include "plugin/kheliopluginwidgetfactoryitem.h"
#include "plugin/kvyrassistanttool.h"
#include "tests/support/shell/headlesstest.h"

namespace {

using Factory = KHelioPluginWidgetFactory;
using Item = KHelioPluginWidgetFactoryItem<KVyrAssistantTool>;

constexpr auto page = KHelioPluginWidget::OfficeAssistantPage;
const QString typeString = QStringLiteral("assistant");

} // namespace

/// The factory item and the shell's register of pages.
class FactoryItemTest : public QObject
{
    Q_OBJECT

private slots:
    void theNumberOfThePageIs64()
    {
        QCOMPARE(Item(page).type(), 64);
        QCOMPARE(Item(page).strType(), QString());
    }

    void anItemWithATypeStringHasTheNumberMinusOne()
    {
        QCOMPARE(Item(typeString).type(), -1);
        QCOMPARE(Item(typeString).strType(), typeString);
    }

    void createMakesThePageOnItsParent()
    {
        Item item(page);
        QWidget window;
        KHelioPluginWidget *made = item.create(&window);
        QVERIFY(qobject_cast<KVyrAssistantTool *>(made));
        QCOMPARE(made->parentWidget(), &window);
        QVERIFY(item.create(&window) != made);
    }

    void hasMethodKnowsExactNamesOfAllClasses_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("known");
        QTest::newRow("own signal") << QStringLiteral("sigShowChildWindow") << true;
        QTest::newRow("own private slot") << QStringLiteral("onCreatingApi") << true;
        QTest::newRow("of QWidget") << QStringLiteral("setVisible") << true;
        QTest::newRow("of QObject") << QStringLiteral("deleteLater") << true;
        QTest::newRow("first of all") << QStringLiteral("destroyed") << true;
        QTest::newRow("other case") << QStringLiteral("sigshowchildwindow") << false;
        QTest::newRow("beginning of a name") << QStringLiteral("sigShow") << false;
        QTest::newRow("end of a name") << QStringLiteral("ChildWindow") << false;
        QTest::newRow("with parentheses") << QStringLiteral("deleteLater()") << false;
        QTest::newRow("with a blank") << QStringLiteral("deleteLater ") << false;
        QTest::newRow("embedded zero") << QString(QLatin1String("deleteLater\0x", 13)) << false;
        QTest::newRow("beyond Latin-1") << QString(QChar(0x6587)) << false;
        QTest::newRow("empty") << QString() << false;
        QTest::newRow("not a meta-method") << QStringLiteral("startupUrl") << false;
        QTest::newRow("a property") << QStringLiteral("windowTitle") << false;
    }

    void hasMethodKnowsExactNamesOfAllClasses()
    {
        QFETCH(QString, name);
        QFETCH(bool, known);
        QCOMPARE(Item(page).hasMethod(name), known);
    }

    void destroyingAnItemTakesItOffTheRegisterOfNumbers()
    {
        auto item = std::make_unique<Item>(page);
        Factory::registerPagePlugin(item.get());
        QCOMPARE(Factory::pagePlugin(page), item.get());
        item.reset();
        QVERIFY(!Factory::pagePlugin(page));
    }

    void destroyingAnItemTakesItOffTheRegisterOfStrings()
    {
        auto item = std::make_unique<Item>(typeString);
        Factory::registerPagePlugin(item.get());
        QCOMPARE(Factory::pagePlugin(typeString), item.get());
        QVERIFY(!Factory::pagePlugin(page));
        QVERIFY(!Factory::pagePlugin(KHelioPluginWidget::StringType));
        item.reset();
        QVERIFY(!Factory::pagePlugin(typeString));
    }

    void destroyingAnItemThatWasNeverRegisteredDoesNothing()
    {
        Item registered(page);
        Factory::registerPagePlugin(&registered);
        {
            const Item other(page);
            const Item nameless{QString()};
        }
        QCOMPARE(Factory::pagePlugin(page), &registered);
    }

    void theLaterItemTakesPrecedenceWhileItIsRegistered()
    {
        Item first(page);
        Factory::registerPagePlugin(&first);
        {
            Item second(page);
            Factory::registerPagePlugin(&second);
            QCOMPARE(Factory::pagePlugin(page), &second);
        }
        QCOMPARE(Factory::pagePlugin(page), &first);
    }

    void registeringTwiceNeedsOneUnregistering()
    {
        Item item(page);
        Factory::registerPagePlugin(&item);
        Factory::registerPagePlugin(&item);
        Factory::unregisterPagePlugin(&item);
        QVERIFY(!Factory::pagePlugin(page));
    }
};

HEADLESS_TEST_MAIN(FactoryItemTest)
#include "tst_factoryitem.moc"
