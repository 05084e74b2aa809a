#include "tests/programs/screengrab/coloreddisplay.h"

#include <cstdlib>

#include <xcb/xcb.h>

namespace testsupport {

namespace {

/// X11 colour channels have 16 bits.
uint16_t longChannel(int channel)
{
    return static_cast<uint16_t>(channel * 0x101);
}

void paint(xcb_connection_t *connection, QRgb color)
{
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const auto request =
        xcb_alloc_color(connection, screen->default_colormap, longChannel(qRed(color)),
                        longChannel(qGreen(color)), longChannel(qBlue(color)));
    xcb_alloc_color_reply_t *reply = xcb_alloc_color_reply(connection, request, nullptr);
    if (!reply)
        qFatal("Xvfb has no colours");
    const uint32_t pixel = reply->pixel;
    std::free(reply);
    xcb_change_window_attributes(connection, screen->root, XCB_CW_BACK_PIXEL, &pixel);
    xcb_clear_area(connection, 0, screen->root, 0, 0, 0, 0);
    // The reply means that all earlier requests are done.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

} // namespace

ColoredDisplay::ColoredDisplay(const QString &screen)
{
    m_server.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-nolisten"),
                    QStringLiteral("tcp"), QStringLiteral("-screen"), QStringLiteral("0"), screen});
    while (m_server.state() != QProcess::NotRunning && !m_server.canReadLine()) {
        if (!m_server.waitForReadyRead())
            qFatal("Xvfb does not start");
    }
    m_name = QLatin1Char(':') + QString::fromLatin1(m_server.readLine()).trimmed();
    m_connection = xcb_connect(m_name.toLatin1().constData(), nullptr);
    if (xcb_connection_has_error(m_connection) != 0)
        qFatal("no connection to the display %s", qPrintable(m_name));
    paint(m_connection, color);
}

ColoredDisplay::~ColoredDisplay()
{
    xcb_disconnect(m_connection);
    m_server.kill();
    m_server.waitForFinished();
}

QString ColoredDisplay::name() const
{
    return m_name;
}

} // namespace testsupport
