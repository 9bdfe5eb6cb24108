#include "toolkit/win32/win_picture.h"

#include <cstring>
#include <vector>

#include "toolkit/picture.h"

namespace gantry::platform {

namespace {

constexpr int kBitmapSize = 96;

BITMAPINFO TopDown(int size) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = size;
  info.bmiHeader.biHeight = -size;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

/// Set where the picture is clear, each row in whole words.
std::vector<uint8_t> MaskOf(const std::vector<uint32_t>& pixels, int size) {
  const auto side = static_cast<size_t>(size);
  const size_t stride = (side + 15) / 16 * 2;
  std::vector<uint8_t> mask(stride * side);
  for (size_t i = 0; i < pixels.size(); ++i) {
    if (pixels[i] >> 24 != 0) continue;
    mask[i / side * stride + i % side / 8] |= static_cast<uint8_t>(0x80U >> (i % side % 8));
  }
  return mask;
}

}  // namespace

HICON MakeIcon(Picture picture, int size) {
  const std::vector<uint32_t> pixels = PaintPicture(picture, size, size);
  if (pixels.empty()) return nullptr;
  const BITMAPINFO info = TopDown(size);
  void* bits = nullptr;
  ICONINFO icon = {};
  icon.fIcon = TRUE;
  icon.hbmColor = ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (icon.hbmColor == nullptr) return nullptr;
  std::memcpy(bits, pixels.data(), pixels.size() * sizeof pixels[0]);
  icon.hbmMask = ::CreateBitmap(size, size, 1, 1, MaskOf(pixels, size).data());
  const HICON made = ::CreateIconIndirect(&icon);
  ::DeleteObject(icon.hbmColor);
  ::DeleteObject(icon.hbmMask);
  return made;
}

void DrawOnWindow(Picture picture, HWND window, HDC context) {
  RECT rect = {};
  if (::GetWindowRect(window, &rect) == 0) return;
  const std::vector<uint32_t> pixels = PaintPicture(picture, kBitmapSize, kBitmapSize);
  const BITMAPINFO info = TopDown(kBitmapSize);
  const int oldMode = ::SetStretchBltMode(context, HALFTONE);
  ::SetBrushOrgEx(context, 0, 0, nullptr);
  ::StretchDIBits(context, 0, 0, rect.right - rect.left, rect.bottom - rect.top, 0, 0, kBitmapSize,
                  kBitmapSize, pixels.data(), &info, DIB_RGB_COLORS, SRCCOPY);
  ::SetStretchBltMode(context, oldMode);
}

}  // namespace gantry::platform
