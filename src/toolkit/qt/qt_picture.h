#pragma once

#include <QIcon>

#include "toolkit/dialog_template.h"

namespace gantry::platform {

QIcon PictureIcon(int picture);

/// Paints a picture over the whole of an X11 window, on a connection of its own. Nothing happens
/// when the window has gone or isn't one of true colour.
void DrawOnWindow(Picture picture, uint32_t window);

}  // namespace gantry::platform
