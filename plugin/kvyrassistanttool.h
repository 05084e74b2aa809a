#pragma once

#include <QPointer>

#include "host/kheliobrowser.h"
#include "host/kheliopluginwidget.h"

class KLiteLinuxShadowBorder;
class KVyrAssistantToolAPI;

/// The assistant's page: a browser that shows the local HTML application, and the script bridge
/// that the application calls.
///
/// The shell connects to the signals by signature. They are declared here and in the bridge because
/// the interface fixes both classes, the order of the signals included.
class KVyrAssistantTool : public KHelioPluginWidget
{
    Q_OBJECT

public:
    /// Makes the page that the properties "widgettype" and "htmlpath" of @p parent describe.
    explicit KVyrAssistantTool(QWidget *parent);
    ~KVyrAssistantTool() override;

    void retranslate() override;

signals:
    void sigCloseMainWindow();
    void sigShowChildWindow(const QString &page);
    void sigShowMinimized();
    void sigShowNormal();
    void sigCloseChildWindow();
    void sigMousePress();
    void sigMouseRelease();
    void sigChangeHtmlPage(const QString &page);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private slots:
    void onCreatingApi(KxWebViewContainer *container, QObject **api);
    void onCreateSucceeded(KHelioBrowserWidgetBase *browser);
    void onCefKeyEvent(Qt::KeyboardModifiers modifiers, int key, bool pressed, bool &handled);
    void onCloseChildWindow();
    void onChangeChildHtmlPage(const QString &page);

private:
    void layOut(KHelioBrowserWidgetBase *browser);
    QString startupUrl() const;
    void fitToParent();

    KVyrAssistantToolAPI *m_bridge = nullptr;
    /// The browser that was reported last. The shell may delete it before the page.
    QPointer<KHelioBrowserWidgetBase> m_browser;
    KHelioBrowserCreator m_creator;
    QString m_page = QStringLiteral("index.html");
    QString m_widgetType;
    KLiteLinuxShadowBorder *m_shadowBorder = nullptr;
};
