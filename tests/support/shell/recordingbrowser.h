#pragma once

#include <QMetaMethod>
#include <QStringList>

#include "host/kheliobrowser.h"
#include "tests/support/shell/recordingcontainer.h"

namespace testsupport {

/// A browser that only records how it is called.
class RecordingBrowser : public KHelioBrowserWidgetBase
{
    Q_OBJECT

public:
    explicit RecordingBrowser(QWidget *parent);

    /// Gives recording browsers to all pages made from now on.
    static void install();

    /// Gives no browser to pages made from now on.
    static void installNone();

    /// The browser that was made last.
    static RecordingBrowser *latest();

    void setZoomLevel(int level) override;
    void setFeatureEnabled(Feature feature, bool enabled) override;
    void setFocusOnLoad(bool focus) override;
    void setStartupUrl(const QString &url) override;
    void navigate(const QUrl &url) override;

    /// Asks the owner for the script object, as a browser does before its first page.
    QObject *askForApi();

    bool hasReceiver(const QMetaMethod &signal) const;

    /// The calls so far, such as "setZoomLevel(0)", in order.
    QStringList calls;
    KxWebViewCefJsApiFlag flag = NoJsApi;
    RecordingContainer container;
};

} // namespace testsupport
