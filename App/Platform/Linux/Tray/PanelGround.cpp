#include "App/Platform/Linux/Tray/PanelGround.h"

#include "App/Platform/Linux/Screen/X11Connection.h"

QImage panelGround(const QRect& place)
{
    auto* const x = X11Connection::connection();
    const int column = place.left() > 0 ? place.left() - 1 : place.right() + 1;
    const auto cookie = xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, X11Connection::root(),
        static_cast<int16_t>(column), static_cast<int16_t>(place.top()), 1,
        static_cast<uint16_t>(place.height()), ~uint32_t { 0 });
    const auto reply = X11Connection::owned(xcb_get_image_reply(x, cookie, nullptr));
    constexpr int bytesPerPixel = 4;
    if (!reply || xcb_get_image_data_length(reply.get()) != place.height() * bytesPerPixel)
        return {};
    const QImage column32(
        xcb_get_image_data(reply.get()), 1, place.height(), bytesPerPixel, QImage::Format_RGB32);
    return column32.copy();
}
