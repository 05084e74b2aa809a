#include "helio/shell/window/windowpicture.h"

#include <QPixmap>
#include <QPointer>
#include <QWidget>

#include "helio/webengine/webenginebrowser.h"

namespace {

constexpr int lookIntervalMs = 250;
/// A page that loads, or checks something, stands still for less between its steps.
constexpr int stillLooks = 4;
/// After this time a page is pictured even if it still changes.
constexpr int longestChangeMs = 10000;
constexpr int longestWaitMs = 30000;

/// Whether the page has painted: away from the window's edge there is more than one colour.
bool hasContent(const QImage &image)
{
    const QRect inner = image.rect().adjusted(8, 8, -8, -8);
    const QRgb first = image.pixel(inner.topLeft());
    for (int y = inner.top(); y <= inner.bottom(); ++y) {
        for (int x = inner.left(); x <= inner.right(); ++x) {
            if (image.pixel(x, y) != first)
                return true;
        }
    }
    return false;
}

} // namespace

namespace shell {

WindowPicture::WindowPicture(QWidget *window, helio::WebEngineBrowser *browser, const QString &path)
    : QObject(window), m_window(window), m_browser(browser), m_path(path)
{
    m_waited.start();
    connect(browser, &KHelioBrowserWidgetBase::loadFinished, this, [this] { m_isLoaded = true; });
    connect(&m_timer, &QTimer::timeout, this, &WindowPicture::look);
    m_timer.start(lookIntervalMs);
}

void WindowPicture::look()
{
    const QImage image = m_window->grab().toImage();
    m_stillLooks = image == m_previous ? m_stillLooks + 1 : 0;
    const bool stands = m_isReady && m_stillLooks >= stillLooks;
    if (m_isLoaded && hasContent(image) && (stands || m_waited.elapsed() > longestChangeMs)) {
        save(image);
    } else if (m_waited.elapsed() > longestWaitMs) {
        m_timer.stop();
        emit finished(QStringLiteral("the page did not paint anything"));
    }
    m_previous = image;
    if (m_isLoaded && !m_isReady)
        askPage();
}

void WindowPicture::askPage()
{
    const QPointer<WindowPicture> self(this);
    m_browser->askWhetherReady([self](bool isReady) {
        if (!self || !isReady)
            return;
        self->m_isReady = true;
        // What stood until now was the outline of a view.
        self->m_stillLooks = 0;
    });
}

void WindowPicture::save(const QImage &image)
{
    m_timer.stop();
    emit finished(image.save(m_path, "PNG")
                      ? QString()
                      : QStringLiteral("the picture cannot be written to ") + m_path);
}

} // namespace shell
