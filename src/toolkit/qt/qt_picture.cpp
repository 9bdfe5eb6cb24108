#include "toolkit/qt/qt_picture.h"

#include <QImage>
#include <QPixmap>
#include <cstdlib>
#include <memory>
#include <vector>

#include <xcb/xcb.h>

#include "toolkit/picture.h"

namespace gantry::platform {

namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

/// The picture on a plain white ground.
std::vector<uint32_t> PaintOpaque(Picture picture, int width, int height) {
  std::vector<uint32_t> pixels = PaintPicture(picture, width, height);
  for (uint32_t& pixel : pixels) {
    const uint32_t alpha = pixel >> 24;
    uint32_t opaque = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      const uint32_t channel = (pixel >> shift) & 0xFF;
      opaque |= (channel * alpha + 255 * (255 - alpha)) / 255 << shift;
    }
    pixel = opaque;
  }
  return pixels;
}

/// Sends the picture in strips that fit into a request.
void PutPixels(xcb_connection_t* connection, xcb_window_t window,
               const xcb_get_geometry_reply_t& place, const std::vector<uint32_t>& pixels) {
  constexpr uint32_t kRequestHead = 32;
  const size_t room = xcb_get_maximum_request_length(connection) - kRequestHead;  // in words
  const size_t rows = std::max<size_t>(room / place.width, 1);
  const xcb_gcontext_t context = xcb_generate_id(connection);
  xcb_create_gc(connection, context, window, 0, nullptr);
  for (size_t top = 0; top < place.height; top += rows) {
    const size_t count = std::min(rows, place.height - top);
    xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, context, place.width,
                  static_cast<uint16_t>(count), 0, static_cast<int16_t>(top), 0, place.depth,
                  static_cast<uint32_t>(count * place.width * sizeof(uint32_t)),
                  reinterpret_cast<const uint8_t*>(pixels.data() + top * place.width));
  }
  xcb_free_gc(connection, context);
}

}  // namespace

QIcon PictureIcon(int picture) {
  QIcon icon;
  for (const int size : {16, 24, 32, 48}) {
    const auto pixels = PaintPicture(static_cast<Picture>(picture), size, size);
    if (pixels.empty()) continue;
    const QImage image(reinterpret_cast<const uchar*>(pixels.data()), size, size,
                       QImage::Format_ARGB32);
    icon.addPixmap(QPixmap::fromImage(image.copy()));
  }
  return icon;
}

void DrawOnWindow(Picture picture, uint32_t window) {
  // Where there is no display, none of what is asked is answered.
  const std::unique_ptr<xcb_connection_t, Disconnect> connection(xcb_connect(nullptr, nullptr));
  const std::unique_ptr<xcb_get_geometry_reply_t, Free> place(xcb_get_geometry_reply(
      connection.get(), xcb_get_geometry(connection.get(), window), nullptr));
  if (place == nullptr || place->depth < 24) return;
  const auto pixels = PaintOpaque(picture, place->width, place->height);
  if (!pixels.empty()) PutPixels(connection.get(), window, *place, pixels);
  // An answer means that the server has done all that came before.
  const auto focus = xcb_get_input_focus(connection.get());
  const std::unique_ptr<void, Free> done(
      xcb_get_input_focus_reply(connection.get(), focus, nullptr));
}

}  // namespace gantry::platform
