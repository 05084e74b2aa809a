#pragma once

#include <QPointer>
#include <QWebEngineView>

#include "host/kheliobrowser.h"
#include "host/kxwebviewasynjsobject.h"

/// What the page's script reaches through the QWebChannel, and how answers reach the page.
class Wire : public KxWebViewContainer
{
    Q_OBJECT

public:
    explicit Wire(QWebEngineView *view);

    void runCallback(const QString &callback, const QString &json, bool base64) override;

    QPointer<KxWebViewAsynJSObject> api;

public Q_SLOTS:
    void call(const QString &text);

Q_SIGNALS:
    void answered(const QString &callback, const QString &json, bool base64);

private:
    QWebEngineView *m_view;
};

/// Chromium behind the interface that the page widget uses.
class Browser : public KHelioBrowserWidgetBase
{
    Q_OBJECT

public:
    explicit Browser(QWidget *owner);

    void setZoomLevel(int level) override;
    void setFeatureEnabled(Feature feature, bool enabled) override;
    void setFocusOnLoad(bool focus) override;
    void setStartupUrl(const QString &url) override;
    void navigate(const QUrl &url) override;

    /// Lets the page stop what its view is doing and send "closechildwindow", or sends that for it.
    void closeView();

private:
    QWebEngineView *m_view;
    Wire *m_wire;
};
