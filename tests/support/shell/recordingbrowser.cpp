#include "tests/support/shell/recordingbrowser.h"

#include <QPointer>

#include "helio/runtime/border/browsermaker.h"

namespace testsupport {

namespace {

QPointer<RecordingBrowser> latestBrowser;

QString word(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

RecordingBrowser::RecordingBrowser(QWidget *parent) : KHelioBrowserWidgetBase(parent) {}

void RecordingBrowser::install()
{
    helio::setBrowserMaker([](QWidget *owner, KxWebViewCefJsApiFlag wanted) {
        latestBrowser = new RecordingBrowser(owner);
        latestBrowser->flag = wanted;
        return latestBrowser.data();
    });
}

void RecordingBrowser::installNone()
{
    helio::setBrowserMaker(
        [](QWidget *, KxWebViewCefJsApiFlag) -> KHelioBrowserWidgetBase * { return nullptr; });
}

RecordingBrowser *RecordingBrowser::latest()
{
    return latestBrowser;
}

void RecordingBrowser::setZoomLevel(int level)
{
    calls.append(QStringLiteral("setZoomLevel(%1)").arg(level));
}

void RecordingBrowser::setFeatureEnabled(Feature feature, bool enabled)
{
    calls.append(QStringLiteral("setFeatureEnabled(%1, %2)").arg(feature).arg(word(enabled)));
}

void RecordingBrowser::setFocusOnLoad(bool focus)
{
    calls.append(QStringLiteral("setFocusOnLoad(%1)").arg(word(focus)));
}

void RecordingBrowser::setStartupUrl(const QString &url)
{
    calls.append(QStringLiteral("setStartupUrl(%1)").arg(url));
}

void RecordingBrowser::navigate(const QUrl &url)
{
    calls.append(QStringLiteral("navigate(%1)").arg(url.toString()));
}

QObject *RecordingBrowser::askForApi()
{
    QObject *api = nullptr;
    emit creatingApi(&container, &api);
    return api;
}

bool RecordingBrowser::hasReceiver(const QMetaMethod &signal) const
{
    return isSignalConnected(signal);
}

} // namespace testsupport
