#include <QMetaMethod>

#include "plugin/kvyrassistanttool.h"
#include "tests/support/shell/headlesstest.h"

/// The page widget's meta-object, on whose order and signatures a shell relies.
class PageMetaObjectTest : public QObject
{
    Q_OBJECT

private slots:
    void theThirteenMembersStandInTheirOrder()
    {
        struct Member
        {
            const char *signature;
            QMetaMethod::MethodType kind;
            QMetaMethod::Access access;
        };
        constexpr auto signal = QMetaMethod::Signal;
        constexpr auto slot = QMetaMethod::Slot;
        const QVector<Member> members{
            {"sigCloseMainWindow()", signal, QMetaMethod::Public},
            {"sigShowChildWindow(QString)", signal, QMetaMethod::Public},
            {"sigShowMinimized()", signal, QMetaMethod::Public},
            {"sigShowNormal()", signal, QMetaMethod::Public},
            {"sigCloseChildWindow()", signal, QMetaMethod::Public},
            {"sigMousePress()", signal, QMetaMethod::Public},
            {"sigMouseRelease()", signal, QMetaMethod::Public},
            {"sigChangeHtmlPage(QString)", signal, QMetaMethod::Public},
            {"onCreatingApi(KxWebViewContainer*,QObject**)", slot, QMetaMethod::Private},
            {"onCreateSucceeded(KHelioBrowserWidgetBase*)", slot, QMetaMethod::Private},
            {"onCefKeyEvent(Qt::KeyboardModifiers,int,bool,bool&)", slot, QMetaMethod::Private},
            {"onCloseChildWindow()", slot, QMetaMethod::Private},
            {"onChangeChildHtmlPage(QString)", slot, QMetaMethod::Private},
        };
        const QMetaObject &metaObject = KVyrAssistantTool::staticMetaObject;
        const int offset = metaObject.methodOffset();
        QCOMPARE(metaObject.methodCount() - offset, members.size());
        for (int index = 0; index < members.size(); ++index) {
            const QMetaMethod method = metaObject.method(offset + index);
            QCOMPARE(method.methodSignature(), QByteArray(members.at(index).signature));
            QCOMPARE(method.methodType(), members.at(index).kind);
            QCOMPARE(method.access(), members.at(index).access);
            QCOMPARE(method.returnType(), static_cast<int>(QMetaType::Void));
        }
    }

    void theWidgetDerivesFromTheHostsPage()
    {
        QCOMPARE(KVyrAssistantTool::staticMetaObject.className(), "KVyrAssistantTool");
        QCOMPARE(KVyrAssistantTool::staticMetaObject.superClass(),
                 &KHelioPluginWidget::staticMetaObject);
    }

    void thePointerTypesAreRegisteredUnderTheirNames()
    {
        // Queued and string-based connections look them up by name.
        QVERIFY(QMetaType::type("KHelioBrowserWidgetBase*") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("KxWebViewContainer*") != QMetaType::UnknownType);
    }

    void initTestCase()
    {
        const KVyrAssistantTool page(nullptr);
        Q_UNUSED(page)
    }
};

HEADLESS_TEST_MAIN(PageMetaObjectTest)
#include "tst_pagemetaobject.moc"
