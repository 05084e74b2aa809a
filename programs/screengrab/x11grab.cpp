#include "programs/screengrab/x11grab.h"

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

#include "texts/texts.h"

namespace programs {

namespace {

struct Disconnect
{
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};
struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;
using ImageReply = std::unique_ptr<xcb_get_image_reply_t, Free>;
using Error = std::unique_ptr<xcb_generic_error_t, Free>;

const xcb_screen_t *screenOf(xcb_connection_t *connection, int number)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; number > 0 && screens.rem > 1; --number)
        xcb_screen_next(&screens);
    return screens.data;
}

/// The memory layout of a root window's picture; invalid if not supported.
QImage::Format formatOf(const xcb_setup_t *setup, int depth)
{
    const bool lowestByteFirst = setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    if (lowestByteFirst != (Q_BYTE_ORDER == Q_LITTLE_ENDIAN))
        return QImage::Format_Invalid;
    switch (depth) {
    case 16:
        return QImage::Format_RGB16;
    case 24:
    case 32:
        return QImage::Format_RGB32;
    case 30:
        return QImage::Format_RGB30;
    default:
        return QImage::Format_Invalid;
    }
}

QImage imageOf(const xcb_setup_t *setup, const xcb_screen_t &screen, xcb_get_image_reply_t *reply)
{
    const QImage::Format format = formatOf(setup, reply->depth);
    if (format == QImage::Format_Invalid)
        return {};
    const int bytesPerLine =
        (screen.width_in_pixels * (format == QImage::Format_RGB16 ? 2 : 4) + 3) & ~3;
    if (xcb_get_image_data_length(reply) < bytesPerLine * screen.height_in_pixels)
        return {};
    const QImage inReply(xcb_get_image_data(reply), screen.width_in_pixels, screen.height_in_pixels,
                         bytesPerLine, format);
    return inReply.convertToFormat(QImage::Format_RGB888);
}

} // namespace

GrabbedPicture grabX11()
{
    int screenNumber = 0;
    const Connection connection(xcb_connect(nullptr, &screenNumber));
    if (xcb_connection_has_error(connection.get()) != 0)
        return GrabbedPicture::notPossible(
            texts::tr("there is no display whose screen could be taken"));
    const xcb_screen_t *screen = screenOf(connection.get(), screenNumber);
    if (!screen)
        return GrabbedPicture::notPossible(texts::tr("the display has no screen"));
    const auto request = xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0,
                                       0, screen->width_in_pixels, screen->height_in_pixels, ~0U);
    xcb_generic_error_t *failure = nullptr;
    const ImageReply reply(xcb_get_image_reply(connection.get(), request, &failure));
    const Error error(failure);
    if (!reply)
        return GrabbedPicture::notPossible(
            texts::tr("the display does not let its screen be read"));
    const QImage image = imageOf(xcb_get_setup(connection.get()), *screen, reply.get());
    if (image.isNull())
        return GrabbedPicture::notPossible(
            texts::tr("the display has %1 bits a pixel, which are not understood")
                .arg(reply->depth));
    return GrabbedPicture::taken(image);
}

} // namespace programs
